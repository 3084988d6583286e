# ZeroMQ with its header for C++ as the target cppzmq, from their own package files. Those of this machine are none for
# another system, also where a build folder remembers them; where ZeroMQ is there as a static library only, the target
# leads to that one.
if(CMAKE_CROSSCOMPILING)
  unset(cppzmq_DIR CACHE)
endif()
find_package(cppzmq ${cppzmq_FIND_VERSION} CONFIG QUIET ONLY_CMAKE_FIND_ROOT_PATH)
if(cppzmq_FOUND AND NOT TARGET libzmq)
  set_target_properties(cppzmq PROPERTIES INTERFACE_LINK_LIBRARIES libzmq-static)
endif()
