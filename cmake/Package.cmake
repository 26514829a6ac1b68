# `cpack -G DEB` in the build directory: one Debian package holding the installed tree under
# /usr. Its Depends are computed from the programs and libraries by dpkg-shlibdeps (dpkg-dev).
set(CPACK_PACKAGE_NAME iconwright)
set(CPACK_PACKAGE_VENDOR Iconwright)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "layered application-icon documents: library and command-line tool")
set(CPACK_PACKAGE_DESCRIPTION "IconwrightFoundation reads, checks and writes layered application-icon \
documents and answers questions about their images; wrighttool drives it from the command line. The \
package also holds the headers, pkg-config and CMake files for programs that embed the library.")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Iconwright developers" CACHE STRING "Maintainer field of the Debian package")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libheif and the libraries of iconwright_runtime_library are opened at run time, so
# dpkg-shlibdeps cannot see them.
get_property(runtime_packages GLOBAL PROPERTY ICONWRIGHT_RUNTIME_PACKAGES)
list(JOIN runtime_packages ", " runtime_packages)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libheif1 (>= ${libheif_VERSION})")
if(runtime_packages)
  string(APPEND CPACK_DEBIAN_PACKAGE_DEPENDS ", ${runtime_packages}")
endif()
include(CPack)
