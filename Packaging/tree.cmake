# Read by CPack once for each package: which of the two trees goes into it.
if(CPACK_GENERATOR STREQUAL "TGZ")
    set(component archive)
    set(CPACK_PACKAGE_FILE_NAME ${CPACK_ARCHIVE_FILE_NAME})
else()
    set(component system)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
endif()
set(CPACK_INSTALL_CMAKE_PROJECTS "${CPACK_BUILD_FOLDER};quelar;${component};/")
