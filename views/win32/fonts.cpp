#include "views/win32/fonts.h"

#include <cwchar>

#include "views/win32/resource.h"

namespace vantrel::views {

namespace {

constexpr wchar_t kTypewriter[] = L"Courier New";

struct Special {
    int control_id;
    const wchar_t* face;
    int points;
    int weight = FW_NORMAL;
};

constexpr Special kSpecials[] = {
    {Fld_INI, kTypewriter, 9},
    {Fld_Log, kTypewriter, 9},
    {Lbl_ProductName, L"Arial", 20, FW_BOLD},
    {Lbl_Description, L"Arial", 10},
    {Lbl_CompanyProduct, L"Arial", 9},
    {Frm_Backup_Lbl_File, L"Verdana", 8},
    {Frm_Backup_Lbl_JobProgress, L"Verdana", 8},
    {Frm_Backup_Lbl_Folder, L"Verdana", 8},
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

}  // namespace

OwnedFont WindowFont(int dpi) {
    return Make(dpi <= USER_DEFAULT_SCREEN_DPI ? L"MS Sans Serif" : L"Microsoft Sans Serif", 8,
                FW_NORMAL, dpi);
}

OwnedFont ControlFont(int control_id, int dpi) {
    for (const Special& special : kSpecials)
        if (special.control_id == control_id)
            return Make(special.face, special.points, special.weight, dpi);
    return nullptr;
}

}  // namespace vantrel::views
