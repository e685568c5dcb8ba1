#include "views/win32/window_resources.h"

#include <cwchar>

#include "views/win32/resource.h"

namespace vantrel::views {

namespace {

struct Named {
    const char* name;
    int id;
};

// One line for each line of resource.h, made by the build.
constexpr Named kControls[] = {
#define VANTREL_CONTROL(control) {#control, control},
#include "control_ids.inc"
#undef VANTREL_CONTROL
};

constexpr wchar_t kTypewriter[] = L"Courier New";

struct Special {
    int control_id;
    const wchar_t* face;
    int points;
    int weight = FW_NORMAL;
};

constexpr const wchar_t* kWindowFace = nullptr;  // the window's own

constexpr Special kSpecials[] = {
    {Fld_INI, kTypewriter, 9},
    {Fld_Log, kTypewriter, 9},
    {Lbl_ProductName, L"Arial", 20, FW_BOLD},
    {Lbl_Description, L"Arial", 10},
    {Lbl_CompanyProduct, L"Arial", 9},
    {Frm_Backup_Lbl_File, L"Verdana", 8},
    {Frm_Backup_Lbl_JobProgress, L"Verdana", 8},
    {Frm_Backup_Lbl_Folder, L"Verdana", 8},
    {Frm_Backup_Lbl_LeftOut, kWindowFace, 8, FW_BOLD},
    {Frm_Restore_Lbl_LeftOut, kWindowFace, 8, FW_BOLD},
    {Frm_Splash_Lbl_ProductName, L"Arial", 32, FW_BOLD},
    {Frm_Splash_Lbl_Description, L"Arial", 14},
    {Frm_Splash_Lbl_Version, L"Arial", 9},
    {Frm_Splash_Lbl_Platform, L"Arial", 9},
    {Frm_Splash_Lbl_CompanyProduct, L"Arial", 9, FW_BOLD},
    {Frm_Splash_Lbl_Copyright, L"Arial", 8},
    {Frm_Splash_Lbl_Warning, L"Arial", 8},
};

OwnedFont Make(const wchar_t* face, int points, int weight, int dpi) {
    // Where there is no Courier New, another typeface of even pitch takes its place.
    const DWORD pitch =
        std::wcscmp(face, kTypewriter) == 0 ? FIXED_PITCH | FF_MODERN : DEFAULT_PITCH | FF_SWISS;
    return OwnedFont(CreateFontW(-MulDiv(points, dpi, 72), 0, 0, 0, weight, FALSE, FALSE, FALSE,
                                 DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                                 DEFAULT_QUALITY, pitch, face));
}

const wchar_t* WindowFace(int dpi) {
    return dpi <= USER_DEFAULT_SCREEN_DPI ? L"MS Sans Serif" : L"Microsoft Sans Serif";
}

// The sizes that every picture is drawn in, in pixels (cmake/windows_product.cmake).
constexpr int kSizes[] = {16, 20, 24, 32, 40, 48, 64, 96};
constexpr int kLargestProduct = 128;  // for the splash at 192 dpi

}  // namespace

int ControlId(const std::string& form, const std::string& control) {
    const std::string name = form == "Frm_Mainmenu" ? control : form + "_" + control;
    for (const Named& named : kControls) {
        if (name == named.name) {
            return named.id;
        }
    }
    return 0;
}

OwnedFont WindowFont(int dpi) { return Make(WindowFace(dpi), 8, FW_NORMAL, dpi); }

OwnedFont ControlFont(int control_id, int dpi) {
    for (const Special& special : kSpecials) {
        if (special.control_id == control_id) {
            return Make(special.face ? special.face : WindowFace(dpi), special.points,
                        special.weight, dpi);
        }
    }
    return nullptr;
}

OwnedIcon LoadPicture(int picture, int pixels) {
    int size = kSizes[0];
    for (int candidate : kSizes) {
        if (candidate <= pixels) {
            size = candidate;
        }
    }
    if (picture == IDI_Product && pixels >= kLargestProduct) {
        size = kLargestProduct;
    }
    return OwnedIcon(
        static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(picture),
                                      IMAGE_ICON, size, size, LR_DEFAULTCOLOR)));
}

int PictureSize(HICON icon) {
    ICONINFO info{};
    if (!GetIconInfo(icon, &info)) {
        return 0;
    }
    BITMAP bitmap{};
    GetObjectW(info.hbmMask, sizeof bitmap, &bitmap);
    DeleteObject(info.hbmMask);
    if (info.hbmColor) {
        DeleteObject(info.hbmColor);
    }
    return static_cast<int>(bitmap.bmWidth);
}

}  // namespace vantrel::views
