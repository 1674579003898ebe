# Runs orv-geodb on the generated system database and an empty user database in a scratch
# folder: `stats` must show the expected amount of pre-defined data, and bad arguments or
# unknown names must fail with a message. Called by ctest with -DORV_GEODB=... -DSCRATCH=...
file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})
set(data "sqlite:${SCRATCH}")

execute_process(COMMAND ${ORV_GEODB} --data ${data} stats
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "orv-geodb stats failed (${rc}): ${err}")
endif()
# The first block is the system database.
string(FIND "${out}" "User database" user_at)
string(SUBSTRING "${out}" 0 ${user_at} system_block)
function(expect_at_least label minimum)
    string(REGEX MATCH "${label} +([0-9]+)" found "${system_block}")
    if(NOT found OR CMAKE_MATCH_1 LESS ${minimum})
        message(FATAL_ERROR "${label}: '${CMAKE_MATCH_1}' is below ${minimum}\n${out}")
    endif()
endfunction()
expect_at_least("Ellipsoids" 45)
expect_at_least("Datum transformations" 700)
expect_at_least("Projections" 1500)
expect_at_least("Units" 30)
expect_at_least("Groups" 150)
expect_at_least("Coordinate systems" 3500)
if(NOT system_block MATCHES "\\(120 UTM\\)")
    message(FATAL_ERROR "the 120 UTM projections are missing\n${out}")
endif()

function(expect_failure expected_rc expected_text)
    execute_process(COMMAND ${ORV_GEODB} --data ${data} ${ARGN}
        RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL ${expected_rc} OR NOT err MATCHES "${expected_text}")
        message(FATAL_ERROR "orv-geodb ${ARGN}: exit ${rc}, stderr '${err}'")
    endif()
endfunction()
expect_failure(2 "Unknown command" bogus)
expect_failure(1 "no group" systems "No such group")
expect_failure(1 "" info ellipsoid "No such ellipsoid")
expect_failure(2 "" info)

execute_process(COMMAND ${ORV_GEODB} --data ${data} groups
    RESULT_VARIABLE rc OUTPUT_VARIABLE out)
if(NOT rc EQUAL 0 OR NOT out MATCHES "Germany")
    message(FATAL_ERROR "orv-geodb groups: exit ${rc}\n${out}")
endif()
file(REMOVE_RECURSE ${SCRATCH})
