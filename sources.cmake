# The one source list, room by room, for every compiler. Tests stand beside the room they test.
set(COMMON_SOURCES
    common/error.cpp
    common/product.cpp)
set(PLATFORM_SOURCES
    platform/text_file.cpp)
set(PLATFORM_HOST_SOURCES)
set(PLATFORM_WIN32_SOURCES)
set(FORMS_SOURCES
    forms/control.cpp
    forms/controls.cpp
    forms/drive_list.cpp
    forms/file_list.cpp
    forms/folder_list.cpp
    forms/folder_path.cpp
    forms/form.cpp
    forms/lists.cpp
    forms/tree.cpp)
set(ZIP_SOURCES)
set(BACKUPSET_SOURCES)
set(LOG_SOURCES)
set(SYSTEM_SOURCES)
set(BACKUP_SOURCES)
set(UI_SOURCES)
set(APP_SOURCES)
set(VIEWS_WIN32_SOURCES)
# Entry points and resources of the Windows executable.
set(VANTREL_EXE_SOURCES)
set(VZIP_SOURCES)

# Used by every test: the fake machine, the scripted desktop, the fault-injecting decorator.
set(TEST_SUPPORT_SOURCES)
set(COMMON_TESTS)
set(PLATFORM_TESTS)
set(FORMS_TESTS)
set(ZIP_TESTS)
set(BACKUPSET_TESTS)
set(LOG_TESTS)
set(SYSTEM_TESTS)
set(BACKUP_TESTS)
set(UI_TESTS)
set(APP_TESTS)
