# The Windows executable and the application folder that a user installs: build/<preset>/app.
if(VANTREL_EXE_SOURCES)
    vantrel_room(views SOURCES ${VIEWS_WIN32_SOURCES} BELOW vantrel_forms)
    add_executable(Vantrel WIN32 ${VANTREL_EXE_SOURCES})
    target_link_libraries(Vantrel PRIVATE vantrel_app vantrel_views vantrel_machine comctl32)
    set_target_properties(Vantrel PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/app)
endif()
