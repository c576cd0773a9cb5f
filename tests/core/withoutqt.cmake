# Run with cmake -P: the core configures where no Qt can be found, and the program
# that was built links none.
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${BUILD}" -G "${GENERATOR}" -DQUELMAR_WINDOWS=OFF
          -DBUILD_TESTING=OFF -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON "-DCMAKE_CXX_COMPILER=${COMPILER}"
  RESULT_VARIABLE failed
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)
if(failed)
  message(FATAL_ERROR "The core does not configure without Qt:\n${output}")
endif()

execute_process(
  COMMAND ldd "${PROGRAM}"
  RESULT_VARIABLE failed
  OUTPUT_VARIABLE libraries)
if(failed)
  message(FATAL_ERROR "ldd fails on ${PROGRAM}")
endif()
if(libraries MATCHES "[Qq]t[0-9]|mpv")
  message(FATAL_ERROR "${PROGRAM} links what the core must do without:\n${libraries}")
endif()
