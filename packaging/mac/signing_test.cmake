# cmake -P signing_test.cmake: an identity hardens and times the nested code and the bundle, one machine's signature
# neither.
include(${CMAKE_CURRENT_LIST_DIR}/signing.cmake)

function(expect what given)
    if(NOT given STREQUAL ARGN)
        message(SEND_ERROR "${what}: ${given} instead of ${ARGN}")
    endif()
endfunction()

pintle_signing("-" deploy sign)
expect("libraries for one machine" "${deploy}" -codesign=-)
expect("bundle for one machine" "${sign}" --force --identifier com.pintle.app --sign -)

pintle_signing("Developer ID: A B" deploy sign)
expect("libraries" "${deploy}" "-codesign=Developer ID: A B" -hardened-runtime -timestamp)
expect("bundle" "${sign}" --force --identifier com.pintle.app --sign "Developer ID: A B" --options runtime --timestamp)

file(READ ${CMAKE_CURRENT_LIST_DIR}/bundle.cmake bundle)
foreach(use "qmldir=\\\${PROJECT_SOURCE_DIR}/app/quick/qml \\\${deploy}" "codesign \\\${sign} \\\${bundle}")
    if(NOT bundle MATCHES "${use}")
        message(SEND_ERROR "The bundle does not use the options: ${use}")
    endif()
endforeach()
