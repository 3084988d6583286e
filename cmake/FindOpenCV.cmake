# OpenCV as the targets opencv_core, opencv_imgproc, opencv_imgcodecs, opencv_videoio.
# OpenCV's own package file is used where it is installed; Debian ships it only with the package that
# pulls in every module, so the headers and libraries of the wanted components are enough too.

find_package(OpenCV ${OpenCV_FIND_VERSION} CONFIG QUIET COMPONENTS ${OpenCV_FIND_COMPONENTS})
if(OpenCV_FOUND)
  return()
endif()

find_path(OpenCV_INCLUDE_DIR opencv2/core.hpp PATH_SUFFIXES opencv4)
set(_opencv_required OpenCV_INCLUDE_DIR)
foreach(component IN LISTS OpenCV_FIND_COMPONENTS)
  find_library(OpenCV_${component}_LIBRARY opencv_${component})
  list(APPEND _opencv_required OpenCV_${component}_LIBRARY)
endforeach()

if(OpenCV_INCLUDE_DIR)
  file(STRINGS ${OpenCV_INCLUDE_DIR}/opencv2/core/version.hpp _opencv_version REGEX "#define CV_VERSION_(MAJOR|MINOR|REVISION)")
  string(REGEX MATCHALL "[0-9]+" _opencv_numbers "${_opencv_version}")
  list(JOIN _opencv_numbers "." OpenCV_VERSION)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(OpenCV REQUIRED_VARS ${_opencv_required} VERSION_VAR OpenCV_VERSION)

if(OpenCV_FOUND)
  foreach(component IN LISTS OpenCV_FIND_COMPONENTS)
    if(NOT TARGET opencv_${component})
      add_library(opencv_${component} UNKNOWN IMPORTED)
      set_target_properties(
        opencv_${component} PROPERTIES IMPORTED_LOCATION ${OpenCV_${component}_LIBRARY}
                                       INTERFACE_INCLUDE_DIRECTORIES ${OpenCV_INCLUDE_DIR})
    endif()
  endforeach()
endif()
