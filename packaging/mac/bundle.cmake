# The application bundle on macOS. Targets: Pintle is the program in its bundle, for running from the build folder;
# Pintle.app is the same with the toolkit inside and signed, for taking elsewhere.
#
# PINTLE_SIGN_IDENTITY names the certificate; "-" signs for this machine only. The desktop ties what the user has
# allowed (accessibility, the login item) to the signature, and a signature for one machine changes with each build.
set(PINTLE_SIGN_IDENTITY "-" CACHE STRING "Identity for codesign")
include(${CMAKE_CURRENT_LIST_DIR}/signing.cmake)
pintle_signing("${PINTLE_SIGN_IDENTITY}" deploy sign)

set(icon ${CMAKE_CURRENT_BINARY_DIR}/Pintle.icns)
add_custom_command(OUTPUT ${icon}
    COMMAND make_app_icon ${PROJECT_SOURCE_DIR}/app/quick/icons/app.svg ${icon}
    DEPENDS make_app_icon ${PROJECT_SOURCE_DIR}/app/quick/icons/app.svg
    VERBATIM)
set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)

add_executable(Pintle MACOSX_BUNDLE main.cpp ${icon})
target_link_libraries(Pintle PRIVATE pintle_root)
set_target_properties(Pintle PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}
    MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/packaging/mac/Info.plist.in)

get_target_property(qmake Qt6::qmake IMPORTED_LOCATION)
get_filename_component(toolkit_programs ${qmake} DIRECTORY)
find_program(PINTLE_MACDEPLOYQT macdeployqt HINTS ${toolkit_programs} REQUIRED)
set(bundle $<TARGET_BUNDLE_DIR:Pintle>)
add_custom_target(Pintle.app
    COMMAND ${PINTLE_MACDEPLOYQT} ${bundle} -qmldir=${PROJECT_SOURCE_DIR}/app/quick/qml ${deploy}
    COMMAND codesign ${sign} ${bundle}
    COMMAND codesign --verify --deep --strict --verbose=1 ${bundle}
    DEPENDS Pintle
    COMMENT "Putting the toolkit into ${bundle} and signing it"
    VERBATIM)
