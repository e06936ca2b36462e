# Installs the library, moves the copy elsewhere, and builds and runs what a stranger would build on it.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${result}")
    endif()
endfunction()

set(copy ${SCRATCH}/copy)
file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${SCRATCH}/installed)
file(RENAME ${SCRATCH}/installed ${copy})

# The host that README.md shows.
set(readme_host ${SCRATCH}/source/readme)
file(READ ${README} text)
string(REGEX MATCH "```cpp\n([^`]*)```\n\n```cmake\n([^`]*)```" shown "${text}")
file(WRITE ${readme_host}/host.cpp "${CMAKE_MATCH_1}")
file(WRITE ${readme_host}/CMakeLists.txt
    "cmake_minimum_required(VERSION 3.23)\nproject(readme LANGUAGES CXX)\nadd_executable(host host.cpp)\n${CMAKE_MATCH_2}")

foreach(project ${SOURCE} ${readme_host} ${EXAMPLES})
    get_filename_component(name ${project} NAME)
    set(build ${SCRATCH}/${name})
    run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${project} -B ${build} -DCMAKE_PREFIX_PATH=${copy}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
    run(${CMAKE_COMMAND} --build ${build})
endforeach()

file(REAL_PATH ${copy} place)
run(${SCRATCH}/host/host ${EXAMPLES}/ligands.sdf ${place}/share/tarnex/residues.qlt)
run(${SCRATCH}/readme/host ${EXAMPLES}/ligands.sdf)
run(${CMAKE_CTEST_COMMAND} --test-dir ${SCRATCH}/examples --output-on-failure)
if(EXISTS ${copy}/bin/tarnex)
    run(${copy}/bin/tarnex --version)
endif()
