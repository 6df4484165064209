# How the bundle and the code in it are signed.
#
# pintle_signing(IDENTITY DEPLOY SIGN): sets DEPLOY to the options of macdeployqt, which signs the libraries and plugins
# that it puts in, and SIGN to those of codesign for the bundle itself. The hardened run time refuses libraries of
# another team, and a signature for one machine ("-") has none; with an identity every piece of code is to be hardened
# and to carry a time, or the whole is not accepted for distribution.
function(pintle_signing identity deploy sign)
    set(nested -codesign=${identity})
    set(bundle --force --identifier com.pintle.app --sign ${identity})
    if(NOT identity STREQUAL "-")
        list(APPEND nested -hardened-runtime -timestamp)
        list(APPEND bundle --options runtime --timestamp)
    endif()
    set(${deploy} ${nested} PARENT_SCOPE)
    set(${sign} ${bundle} PARENT_SCOPE)
endfunction()
