# The Windows executable and the application folder that a user installs: build/<preset>/app.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
include(cmake/product_version.cmake)
set(VANTREL_GENERATED ${CMAKE_BINARY_DIR}/generated)
set(VANTREL_APP ${CMAKE_BINARY_DIR}/app)
file(MAKE_DIRECTORY ${VANTREL_GENERATED} ${VANTREL_APP}/System)

configure_file(views/win32/vantrel.manifest.in ${VANTREL_GENERATED}/vantrel.manifest @ONLY)
configure_file(views/win32/version.rc.in ${VANTREL_GENERATED}/version.rc @ONLY)

# The table from control names to numbers: the names that resource.h defines between its marks.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${CMAKE_SOURCE_DIR}/views/win32/resource.h)
file(READ views/win32/resource.h resource_header)
string(REGEX MATCH "// Controls: begin.*// Controls: end" resource_header "${resource_header}")
string(REGEX MATCHALL "#define [A-Za-z0-9_]+" control_names "${resource_header}")
list(TRANSFORM control_names REPLACE "#define (.+)" "VANTREL_CONTROL(\\1)\n")
string(CONCAT control_table ${control_names})
file(CONFIGURE OUTPUT ${VANTREL_GENERATED}/control_ids.inc CONTENT "${control_table}" @ONLY)

# The icons and the animation, from the drawings.
find_program(VANTREL_RSVG rsvg-convert REQUIRED)
find_program(VANTREL_CONVERT NAMES magick convert REQUIRED)
set(VANTREL_DRAWINGS ${CMAKE_SOURCE_DIR}/views/win32/pictures)
set(VANTREL_PICTURES)
foreach(picture product folder open_folder protected_folder backup_set files archive destination)
    set(sizes 16 20 24 32 40 48 64 96)
    if(picture STREQUAL product)
        list(APPEND sizes 128 256)  # the splash at 192 dpi; the shell's large views
    endif()
    set(drawing ${VANTREL_DRAWINGS}/${picture}.svg)
    add_custom_command(
        OUTPUT ${VANTREL_GENERATED}/${picture}.ico
        COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_SOURCE_DIR}/scripts/make-icon ${VANTREL_CONVERT} ${drawing}
                ${VANTREL_GENERATED}/${picture}.ico ${sizes}
        DEPENDS scripts/make-icon ${drawing} VERBATIM)
    list(APPEND VANTREL_PICTURES ${VANTREL_GENERATED}/${picture}.ico)
endforeach()
set(VANTREL_CLIPS)
file(GLOB drawings CONFIGURE_DEPENDS ${VANTREL_DRAWINGS}/*.svg)
function(vantrel_clip name dpi)
    set(clip ${VANTREL_APP}/System/${name})
    add_custom_command(
        OUTPUT ${clip}
        COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_SOURCE_DIR}/scripts/make-animation ${VANTREL_CONVERT}
                ${VANTREL_DRAWINGS} ${clip} ${dpi}
        DEPENDS scripts/make-animation ${drawings} VERBATIM)
    set(VANTREL_CLIPS ${VANTREL_CLIPS} ${clip} PARENT_SCOPE)
endfunction()
vantrel_clip(FileCopy.AVI 96)
vantrel_clip(FileCopy-144.AVI 144)
vantrel_clip(FileCopy-192.AVI 192)

# The page that F1 opens.
file(GLOB guide_pictures CONFIGURE_DEPENDS docs/pictures/*.png)
add_custom_command(
    OUTPUT ${VANTREL_APP}/guide.html
    COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_SOURCE_DIR}/scripts/make-guide
            ${CMAKE_SOURCE_DIR}/docs/guide.md ${VANTREL_APP}/guide.html ${VANTREL_VERSION_TEXT}
    DEPENDS scripts/make-guide docs/guide.md common/product.h ${guide_pictures} VERBATIM)

# A new installation protects no folder: this list is the one that the program itself would create, and
# the first restore needs it.
string(CONCAT protected_list
    ";---------------------------\n"
    ";  Quennell Backup Utility  \n"
    ";        Version ${VANTREL_VERSION_TEXT}\n"
    ";      ${VANTREL_NOTICE_WORD}  1999      \n"
    ";---------------------------\n"
    ";  Secure Data Directories  \n"
    ";\n"
    "\n")
file(CONFIGURE OUTPUT ${VANTREL_GENERATED}/Vantrel.Cfg CONTENT "${protected_list}"
     @ONLY NEWLINE_STYLE CRLF)
configure_file(${VANTREL_GENERATED}/Vantrel.Cfg ${VANTREL_APP}/Vantrel.Cfg COPYONLY)

set_source_files_properties(
    views/win32/vantrel.rc PROPERTIES OBJECT_DEPENDS
    "${VANTREL_PICTURES};${CMAKE_SOURCE_DIR}/views/win32/resource.h")
set_source_files_properties(${VANTREL_GENERATED}/version.rc PROPERTIES OBJECT_DEPENDS
                            ${VANTREL_GENERATED}/vantrel.manifest)

# The windows, and the resources that an executable needs for them.
enable_language(RC)
vantrel_module(views SOURCES ${VIEWS_WIN32_SOURCES} BELOW vantrel_forms)
target_include_directories(vantrel_views PRIVATE ${VANTREL_GENERATED})
target_link_libraries(vantrel_views PUBLIC comctl32 comdlg32 uxtheme gdi32 ole32 uuid)
function(vantrel_show_windows name)
    target_sources(${name} PRIVATE views/win32/vantrel.rc ${VANTREL_GENERATED}/version.rc)
    target_include_directories(${name} PRIVATE ${VANTREL_GENERATED})
    target_link_libraries(${name} PRIVATE vantrel_views)
endfunction()
function(vantrel_windows_program name)
    add_executable(${name} WIN32 ${ARGN})
    vantrel_show_windows(${name})
    target_link_libraries(${name} PRIVATE vantrel_app vantrel_machine)
endfunction()

if(VANTREL_EXE_SOURCES)
    vantrel_windows_program(Vantrel ${VANTREL_EXE_SOURCES})
    set_target_properties(Vantrel PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VANTREL_APP})
    add_custom_target(vantrel_clip ALL DEPENDS ${VANTREL_CLIPS})
    add_custom_target(vantrel_guide ALL DEPENDS ${VANTREL_APP}/guide.html)
    add_dependencies(Vantrel vantrel_clip vantrel_guide)

    # The files of a package, without those that a user has added: `cmake --install`.
    install(TARGETS Vantrel vzip RUNTIME DESTINATION .)
    install(FILES ${VANTREL_GENERATED}/Vantrel.Cfg ${VANTREL_APP}/guide.html DESTINATION .)
    install(FILES ${VANTREL_CLIPS} DESTINATION System)
endif()
if(VANTREL_TESTS)
    vantrel_windows_program(listing_time EXCLUDE_FROM_ALL tests/views/listing_time.cpp)
    target_link_libraries(listing_time PRIVATE psapi)
endif()
