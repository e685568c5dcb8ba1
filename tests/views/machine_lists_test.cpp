// The three lists that look at the machine, on real drives and folders.
#include <algorithm>

#include "tests/views/windows_under_test.h"

namespace vantrel::test {

namespace {

class DriveLists : public WindowFixture<WhereWindow> {
  protected:
    DriveLists() {
        list.SetDrive(machine->WorkDrive());
        Happened();
    }
    static std::string Entry(const std::string& drive, const std::string& label = "") {
        const std::string letter(1, static_cast<char>(std::tolower(drive[0])));
        return letter + ":" + (label.empty() ? "" : " [" + label + "]");
    }
    int IndexOf(const std::string& drive) const {
        for (std::size_t i = 0; i < list.Entries().size(); ++i) {
            if (list.Entries()[i].starts_with(Entry(drive))) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }
    void Expect(const std::string& drive) {
        EXPECT_EQ(drive, list.Drive().substr(0, drive.size()));
        EXPECT_EQ(list.Drive(), user->Text(list));
        EXPECT_EQ(list.Index(), user->Highlighted(list));
    }
    forms::DriveList& list = window.Dri_DriveList;
};

class FolderLists : public WindowFixture<WhereWindow> {
  protected:
    FolderLists() {
        for (const char* name : {"", "\\Alpha", "\\Alpha\\Deep", "\\beta", "\\Gamma"}) {
            MakeFolder(root + name);
        }
        list.SetPath(root);
        Happened();
    }
    ~FolderLists() override {
        for (const char* name : {"\\Alpha\\Deep", "\\Alpha", "\\beta", "\\Gamma", ""}) {
            RemoveFolder(root + name);
        }
    }
    void MakeFolder(const std::string& path) {
        if (!Files().Find(path)) {
            Files().MakeFolder(path);
        }
    }
    void RemoveFolder(const std::string& path) {
        if (Files().Find(path)) {
            Files().RemoveFolder(path);
        }
    }
    platform::FileSystem& Files() { return machine->machine().files; }
    int IndexOf(const std::string& name) {
        const Lines items = user->Items(list);
        return static_cast<int>(std::find(items.begin(), items.end(), name) - items.begin());
    }
    void ExpectCurrent(const std::string& path) {
        EXPECT_EQ(path, list.Path());
        const Lines items = user->Items(list);
        const int current = user->Highlighted(list);
        ASSERT_LT(current, static_cast<int>(items.size()));
        EXPECT_EQ(path.substr(path.rfind('\\') + 1), items[static_cast<std::size_t>(current)]);
    }
    const std::string drive = machine->WorkDrive() + "\\";
    const std::string root = drive + "Vantrel folder list";
    forms::FolderList& list = window.Dir_DirList;
};

class FileLists : public WindowFixture<MainWindow> {
  protected:
    FileLists() {
        if (!Files().Find(folder)) {
            Files().MakeFolder(folder);
        }
        for (const char* name : kNames) {
            Put(name);
        }
        window.TAB_Backup.SetTab(MainWindow::kEdit);
        list.SetPath(folder);
        Happened();
    }
    ~FileLists() override {
        for (const char* name : kNames) {
            if (Files().Find(folder + "\\" + name)) {
                Files().RemoveFile(folder + "\\" + name);
            }
        }
        Files().RemoveFolder(folder);
    }
    void Put(const std::string& name) {
        Files().Open(folder + "\\" + name, platform::OpenMode::kWrite)->Close();
    }
    platform::FileSystem& Files() { return machine->machine().files; }
    static constexpr const char* kNames[] = {"weekly.ini", "Daily.INI", "Notes.txt", "Old.ini2"};
    const std::string folder = machine->WorkDrive() + "\\Vantrel file list";
    forms::FileList& list = window.Fil_INI;
};

TEST_F(DriveLists, ShowDrivesWithTheirLabels) {
    const Lines items = user->Items(list);
    EXPECT_EQ(list.Entries(), items);
    for (const std::string& entry :
         {Entry(machine->OtherDrive(), machine->OtherLabel()), Entry(machine->EmptyDrive())}) {
        EXPECT_EQ(1, std::count(items.begin(), items.end(), entry)) << entry;
    }
    EXPECT_EQ(0, std::count(items.begin(), items.end(), Entry(machine->MissingDrive())));
}

TEST_F(DriveLists, ChosenByTheUserRaiseChangeOnce) {
    const std::string other = Entry(machine->OtherDrive(), machine->OtherLabel());
    user->Choose(list, IndexOf(machine->OtherDrive()));
    EXPECT_EQ(Lines{"Dri_DriveList Change " + other}, Happened());
    Expect(other);
}

TEST_F(DriveLists, ChosenAgainByTheUserRaiseNothing) {
    user->Choose(list, list.Index());
    EXPECT_EQ(Lines{}, Happened());
    Expect(Entry(machine->WorkDrive()));
}

TEST_F(DriveLists, ArrowDownGoesToTheNextDrive) {
    const auto next = static_cast<std::size_t>(list.Index()) + 1;
    user->Press(list, Key::kDown);
    EXPECT_EQ(Lines{"Dri_DriveList Change " + list.Entries().at(next)}, Happened());
    Expect(list.Entries().at(next));
}

TEST_F(DriveLists, UserMayChooseADriveWithoutADisk) {
    user->Choose(list, IndexOf(machine->EmptyDrive()));
    EXPECT_EQ(Lines{"Dri_DriveList Change " + Entry(machine->EmptyDrive())}, Happened());
    Expect(Entry(machine->EmptyDrive()));
}

TEST_F(DriveLists, SetByTheProgramRaiseChangeOnlyWhenTheDriveDiffers) {
    list.SetDrive(machine->OtherDrive() + "\\Some\\Folder");
    EXPECT_EQ(1u, Happened().size());
    Expect(Entry(machine->OtherDrive(), machine->OtherLabel()));
    list.SetDrive(Entry(machine->OtherDrive()));
    EXPECT_EQ(Lines{}, Happened());
}

TEST_F(DriveLists, RefuseWith68AndStillShowTheOldDrive) {
    for (const std::string& refused : {machine->MissingDrive() + "\\", machine->EmptyDrive() + "\\",
                                       std::string("\\"), std::string("\\\\server\\share")}) {
        EXPECT_EQ(68, ErrorOf([&] { list.SetDrive(refused); })) << refused;
        EXPECT_EQ(Lines{}, Happened()) << refused;
        Expect(Entry(machine->WorkDrive()));
    }
}

TEST_F(DriveLists, HandlerMayGoBackToTheOldDrive) {
    list.Change = [&] { list.SetDrive(machine->WorkDrive()); };
    user->Choose(list, IndexOf(machine->EmptyDrive()));
    Expect(Entry(machine->WorkDrive()));
}

TEST_F(DriveLists, DisabledAreNotOpenedByTheUser) {
    list.SetEnabled(false);
    user->Choose(list, IndexOf(machine->OtherDrive()));
    EXPECT_EQ(Lines{}, Happened());
    Expect(Entry(machine->WorkDrive()));
}

TEST_F(FolderLists, ShowTheWayFromTheRootAndThenTheSubFolders) {
    EXPECT_EQ((Lines{drive, "Vantrel folder list", "Alpha", "beta", "Gamma"}), user->Items(list));
    ExpectCurrent(root);
}

TEST_F(FolderLists, OneClickHighlightsOnly) {
    const int alpha = IndexOf("Alpha");
    user->Choose(list, alpha);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(root, list.Path());
    EXPECT_EQ(alpha, user->Highlighted(list));
}

TEST_F(FolderLists, DoubleClickOpensAndRaisesChangeOnce) {
    user->DoubleClick(list, IndexOf("Alpha"));
    EXPECT_EQ(Lines{"Dir_DirList Change " + root + "\\Alpha"}, Happened());
    EXPECT_EQ((Lines{drive, "Vantrel folder list", "Alpha", "Deep"}), user->Items(list));
    ExpectCurrent(root + "\\Alpha");
}

TEST_F(FolderLists, DoubleClickOnAFolderOfTheWayGoesBackToIt) {
    list.SetPath(root + "\\Alpha\\Deep");
    Happened();
    user->DoubleClick(list, IndexOf("Vantrel folder list"));
    EXPECT_EQ(Lines{"Dir_DirList Change " + root}, Happened());
    ExpectCurrent(root);
}

TEST_F(FolderLists, DoubleClickOnTheCurrentFolderRaisesNothing) {
    user->DoubleClick(list, IndexOf("Vantrel folder list"));
    EXPECT_EQ(Lines{}, Happened());
    ExpectCurrent(root);
}

TEST_F(FolderLists, EnterOpensTheHighlightedFolderAndDoesNotPressTheDefaultButton) {
    user->Choose(list, IndexOf("beta"));
    user->Press(list, Key::kEnter);
    EXPECT_EQ(Lines{"Dir_DirList Change " + root + "\\beta"}, Happened());
    ExpectCurrent(root + "\\beta");
}

TEST_F(FolderLists, SetByTheProgramRaiseChangeOnlyForAnotherFolderCaseAside) {
    list.SetPath(root + "\\Gamma");
    EXPECT_EQ(1u, Happened().size());
    ExpectCurrent(root + "\\Gamma");
    list.SetPath(root + "\\GAMMA\\");
    EXPECT_EQ(Lines{}, Happened());
    ExpectCurrent(root + "\\GAMMA");
}

TEST_F(FolderLists, PointedAtADriveShowItsRoot) {
    list.SetPath(machine->OtherDrive());
    EXPECT_EQ(Lines{"Dir_DirList Change " + machine->OtherDrive() + "\\"}, Happened());
    EXPECT_EQ(machine->OtherDrive() + "\\", user->Items(list).at(0));
    EXPECT_EQ(0, user->Highlighted(list));
}

TEST_F(FolderLists, RefuseWith76AndStillShowTheOldFolder) {
    const Lines before = user->Items(list);
    for (const std::string& refused :
         {root + "\\Missing", machine->EmptyDrive() + "\\", machine->MissingDrive() + "\\"}) {
        EXPECT_EQ(76, ErrorOf([&] { list.SetPath(refused); })) << refused;
        EXPECT_EQ(Lines{}, Happened()) << refused;
        EXPECT_EQ(before, user->Items(list));
        ExpectCurrent(root);
    }
}

TEST_F(FolderLists, OpeningAFolderThatWentAwayIsRefusedWith76) {
    const int gamma = IndexOf("Gamma");
    RemoveFolder(root + "\\Gamma");
    user->DoubleClick(list, gamma);
    EXPECT_EQ(std::vector{76}, user->errors);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(root, list.Path());
}

TEST_F(FolderLists, ANewFolderIsSeenAfterReading) {
    RemoveFolder(root + "\\beta");
    list.Reload();
    EXPECT_EQ((Lines{drive, "Vantrel folder list", "Alpha", "Gamma"}), user->Items(list));
    MakeFolder(root + "\\beta");
    list.Reload();
    EXPECT_EQ((Lines{drive, "Vantrel folder list", "Alpha", "beta", "Gamma"}), user->Items(list));
    EXPECT_EQ(Lines{}, Happened());
    ExpectCurrent(root);
}

TEST_F(FolderLists, DisabledOpenNothing) {
    const int alpha = IndexOf("Alpha");
    list.SetEnabled(false);
    user->DoubleClick(list, alpha);
    EXPECT_EQ(Lines{}, Happened());
    ExpectCurrent(root);
}

TEST_F(FileLists, ShowFilesOfTheExactExtensionSorted) {
    EXPECT_EQ((Lines{"Daily.INI", "weekly.ini"}), user->Items(list));
    EXPECT_EQ(-1, user->Highlighted(list));
}

TEST_F(FileLists, ChosenByTheUserRaiseOneClick) {
    user->Choose(list, 1);
    EXPECT_EQ(Lines{"Fil_INI Click weekly.ini"}, Happened());
    EXPECT_EQ(1, list.Index());
    EXPECT_EQ(1, user->Highlighted(list));
}

TEST_F(FileLists, ArrowDownGoesToTheNextFile) {
    user->Choose(list, 0);
    Happened();
    user->Press(list, Key::kDown);
    EXPECT_EQ(Lines{"Fil_INI Click weekly.ini"}, Happened());
    EXPECT_EQ(1, user->Highlighted(list));
}

TEST_F(FileLists, ChosenFromCodeRaiseClickAndPutBackDoNot) {
    list.SetIndex(1);
    EXPECT_EQ(Lines{"Fil_INI Click weekly.ini"}, Happened());
    list.RestoreIndex(0);
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(0, user->Highlighted(list));
}

TEST_F(FileLists, HandlerMayPutTheSelectionBack) {
    list.SetIndex(0);
    list.Click = [&] { list.RestoreIndex(0); };
    user->Choose(list, 1);
    EXPECT_EQ(0, list.Index());
    EXPECT_EQ(0, user->Highlighted(list));
}

TEST_F(FileLists, RightButtonRaisesMouseDownAndChoosesNothing) {
    user->RightClick(list);
    EXPECT_EQ(Lines{"Fil_INI MouseDown 2"}, Happened());
    EXPECT_EQ(-1, user->Highlighted(list));
}

TEST_F(FileLists, ReadAgainSelectNothingAndRaiseNothing) {
    list.SetIndex(1);
    Happened();
    Files().RemoveFile(folder + "\\weekly.ini");
    list.Reload();
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(Lines{"Daily.INI"}, user->Items(list));
    EXPECT_EQ(-1, user->Highlighted(list));
}

TEST_F(FileLists, RefuseWith76AndStillShowTheOldFiles) {
    list.SetIndex(1);
    Happened();
    EXPECT_EQ(76, ErrorOf([&] { list.SetPath(folder + "\\Missing"); }));
    EXPECT_EQ(Lines{}, Happened());
    EXPECT_EQ(folder, list.Path());
    EXPECT_EQ((Lines{"Daily.INI", "weekly.ini"}), user->Items(list));
    EXPECT_EQ(1, user->Highlighted(list));
}

}  // namespace

}  // namespace vantrel::test
