# Installs the built library into a scratch prefix, then configures, builds
# and runs a consumer project that finds it with find_package(Lumatrex).
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run step)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${WORK_DIR}" RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${step} failed (${result}):\n${out}\n${err}")
  endif()
  message(STATUS "${step}: ok\n${out}")
endfunction()

run("install" ${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")
run("configure consumer" ${CMAKE_COMMAND} -S "${CONSUMER_SOURCE}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_PREFIX_PATH=${prefix}")
run("build consumer" ${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("run consumer" "${WORK_DIR}/build/consumer")
# The installed programs must start from the prefix alone (they find the
# library through their relative run path).
if(EXISTS "${prefix}/bin/lumatrex")
  run("run installed lumatrex" "${prefix}/bin/lumatrex" dump --help)
  run("run installed editor" "${prefix}/bin/lumatrex-editor" --output "${WORK_DIR}/editor.png")
endif()
