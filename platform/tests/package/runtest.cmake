# Installs the platform libraries of a build tree, moves the installation, and builds and runs a project that finds them there.
#     cmake -DBUILD_DIR=… -DSCRATCH_DIR=… -DSOURCE_DIR=… -DCXX_FLAGS=… -DGENERATOR=… -DCOMPILER=… -P runtest.cmake
file(REMOVE_RECURSE "${SCRATCH_DIR}")
set(installed "${SCRATCH_DIR}/moved")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "failed with ${status}: ${command}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}/platform" --prefix "${SCRATCH_DIR}/first")
file(RENAME "${SCRATCH_DIR}/first" "${installed}")

# Nothing in the package may lead back to where it was built or first installed.
file(GLOB scripts "${installed}/lib/cmake/SwitchPanelPlatform/*.cmake")
if(NOT scripts)
  message(FATAL_ERROR "no package was installed")
endif()
foreach(script IN LISTS scripts)
  file(READ "${script}" text)
  foreach(place IN ITEMS "${BUILD_DIR}" "${SOURCE_DIR}" "${SCRATCH_DIR}")
    string(FIND "${text}" "${place}" found)
    if(NOT found EQUAL -1)
      message(FATAL_ERROR "${script} contains ${place}")
    endif()
  endforeach()
endforeach()

run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}/tests/package" -B "${SCRATCH_DIR}/build" -G "${GENERATOR}"
  "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_PREFIX_PATH=${installed}"
  -DCMAKE_BUILD_TYPE=Release)
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}/build")
run("${SCRATCH_DIR}/build/packageuser")
if(NOT output MATCHES "the platform answers")
  message(FATAL_ERROR "unexpected output: ${output}")
endif()
file(REMOVE_RECURSE "${SCRATCH_DIR}")
