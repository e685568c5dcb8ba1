# The product's name, version and notice, from the only file that defines them, common/product.h.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${CMAKE_SOURCE_DIR}/common/product.h)
file(READ ${CMAKE_SOURCE_DIR}/common/product.h product_header)

function(vantrel_product_value constant variable)
    if(NOT product_header MATCHES "${constant} = \"?([^\";]+)\"?;")
        message(FATAL_ERROR "common/product.h does not define ${constant}")
    endif()
    set(${variable} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

vantrel_product_value(kName VANTREL_NAME)
vantrel_product_value(kCompany VANTREL_COMPANY)
vantrel_product_value(kNoticeLine VANTREL_NOTICE)
vantrel_product_value(kNoticeWord VANTREL_NOTICE_WORD)
vantrel_product_value(kVersionMajor VANTREL_MAJOR)
vantrel_product_value(kVersionMinor VANTREL_MINOR)
vantrel_product_value(kVersionBuild VANTREL_BUILD)
vantrel_product_value(kVersionRevision VANTREL_REVISION)
set(VANTREL_VERSION "${VANTREL_MAJOR}.${VANTREL_MINOR}.${VANTREL_BUILD}.${VANTREL_REVISION}")
string(REPLACE "." "," VANTREL_VERSION_COMMAS "${VANTREL_VERSION}")
set(VANTREL_VERSION_TEXT "${VANTREL_MAJOR}.${VANTREL_MINOR}.${VANTREL_REVISION}")
