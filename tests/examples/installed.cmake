# Installs the engine into an empty folder, builds the example on it as a stranger would, runs it.
#   cmake -DBUILD=<build folder> -DEXAMPLE=<folder> -DCOMPILER=<c++> -P installed.cmake
set(work ${BUILD}/installed-engine)
file(REMOVE_RECURSE ${work})
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY OUTPUT_VARIABLE output)
    set(output "${output}" PARENT_SCOPE)
endfunction()
run(${CMAKE_COMMAND} --install ${BUILD} --component jet --prefix ${work}/prefix)
run(${CMAKE_COMMAND} -S ${EXAMPLE} -B ${work}/build
    -DCMAKE_PREFIX_PATH=${work}/prefix -DCMAKE_CXX_COMPILER=${COMPILER})
run(${CMAKE_COMMAND} --build ${work}/build)
run(${work}/build/addresses ${work}/addresses.mdb)
set(expected "1 Ёлкина, Омск\n2 Жуков, Псков\n3 О\"Нил, Тула\n")
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "The example printed:\n${output}instead of:\n${expected}")
endif()
