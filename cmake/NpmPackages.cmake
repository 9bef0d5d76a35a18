# napammul_npm_packages(<result>): fetches the packages that package-lock.json in the current source
# folder pins, once, into the current build folder. <result> becomes the folder that contains them. If
# they cannot be fetched, it becomes empty, and there is a message.
find_program(NAPAMMUL_NPM npm DOC "Fetches the packages of the report page and of its tests")
find_program(NAPAMMUL_NODE node DOC "Builds the report page, and runs its tests")

function(napammul_npm_packages result)
    set(lock "${CMAKE_CURRENT_SOURCE_DIR}/package-lock.json")
    set(fetched "${CMAKE_CURRENT_BINARY_DIR}/fetched-package-lock.json")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${lock}")
    set(${result} "${CMAKE_CURRENT_BINARY_DIR}/node_modules" PARENT_SCOPE)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -E compare_files "${lock}" "${fetched}"
        RESULT_VARIABLE difference OUTPUT_QUIET ERROR_QUIET)
    if(difference EQUAL 0)
        return()
    endif()

    set(${result} "" PARENT_SCOPE)
    if(NOT NAPAMMUL_NPM)
        message(STATUS "npm is missing, so the packages in ${lock} are not fetched")
        return()
    endif()
    configure_file(package.json package.json COPYONLY)
    configure_file(package-lock.json package-lock.json COPYONLY)
    # Without a network, npm would keep trying for minutes. A slow network needs time for esbuild, which
    # is 10 MB.
    execute_process(
        COMMAND "${NAPAMMUL_NPM}" ci --ignore-scripts --no-audit --no-fund --loglevel=error
            --fetch-retries=1 --fetch-retry-mintimeout=1000 --fetch-timeout=20000
        WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
        TIMEOUT 180 RESULT_VARIABLE failure OUTPUT_QUIET ERROR_VARIABLE errors)
    if(failure)
        string(REGEX REPLACE "\n.*" "" errors "${errors}")
        message(STATUS "npm could not fetch the packages in ${lock}: ${errors}")
        return()
    endif()
    file(COPY_FILE "${lock}" "${fetched}")
    set(${result} "${CMAKE_CURRENT_BINARY_DIR}/node_modules" PARENT_SCOPE)
endfunction()
