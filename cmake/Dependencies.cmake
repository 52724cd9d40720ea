# Host dependencies. All come from Debian packages (see scripts/install-deps.sh).
find_package(Threads REQUIRED)
find_package(EXPAT REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(SAFEC REQUIRED IMPORTED_TARGET libsafec)

# The real AOSP liblog and libutils as Debian packages them: headers under
# /usr/include/android, libraries in a private directory of the target's multiarch folder.
if(NOT CMAKE_LIBRARY_ARCHITECTURE)
    execute_process(COMMAND ${CMAKE_C_COMPILER} -print-multiarch
        OUTPUT_VARIABLE CMAKE_LIBRARY_ARCHITECTURE OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
if(NOT CMAKE_LIBRARY_ARCHITECTURE)
    message(FATAL_ERROR "Cannot tell the target's multiarch triplet; set CMAKE_LIBRARY_ARCHITECTURE")
endif()
set(ANDROID_HOST_INCLUDE /usr/include/android)
set(ANDROID_HOST_LIBDIR /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android)
find_library(ANDROID_LIBLOG NAMES log PATHS ${ANDROID_HOST_LIBDIR} NO_DEFAULT_PATH REQUIRED)
find_library(ANDROID_LIBUTILS NAMES utils PATHS ${ANDROID_HOST_LIBDIR} NO_DEFAULT_PATH REQUIRED)

add_library(android::log SHARED IMPORTED)
set_target_properties(android::log PROPERTIES IMPORTED_LOCATION ${ANDROID_LIBLOG}
    INTERFACE_INCLUDE_DIRECTORIES ${ANDROID_HOST_INCLUDE})
add_library(android::utils SHARED IMPORTED)
set_target_properties(android::utils PROPERTIES IMPORTED_LOCATION ${ANDROID_LIBUTILS}
    INTERFACE_INCLUDE_DIRECTORIES ${ANDROID_HOST_INCLUDE}
    INTERFACE_LINK_LIBRARIES android::log)

# Everything that links the Android libraries finds them at run time without LD_LIBRARY_PATH.
set(CMAKE_BUILD_RPATH ${ANDROID_HOST_LIBDIR})
set(CMAKE_INSTALL_RPATH ${ANDROID_HOST_LIBDIR})
