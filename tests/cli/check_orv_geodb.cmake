# Runs orv-geodb on the generated system database and a scratch folder without a user
# database: `stats` must show the expected amount of pre-defined data, `find` must find
# systems by name fragment and EPSG code, `export` must write a WKT2 that projinfo reads, no
# command may create a database file, and bad arguments or unknown names must fail with a
# message. Called by ctest with -DORV_GEODB=... -DSCRATCH=...
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

expect_failure(2 "Unknown kind" list geoids)
expect_failure(2 "needs --format" export Europe "ED50 / UTM zone 31N")
expect_failure(2 "Unknown format" export Europe "ED50 / UTM zone 31N" --format gml)
expect_failure(1 "No such system" export Europe "No such system" --format wkt2)
expect_failure(1 "Nothing is named like" find "no such thing at all")

execute_process(COMMAND ${ORV_GEODB} --data ${data} groups
    RESULT_VARIABLE rc OUTPUT_VARIABLE out)
if(NOT rc EQUAL 0 OR NOT out MATCHES "Germany")
    message(FATAL_ERROR "orv-geodb groups: exit ${rc}\n${out}")
endif()

function(expect_output expected)
    execute_process(COMMAND ${ORV_GEODB} --data ${data} ${ARGN}
        RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0 OR NOT out MATCHES "${expected}")
        message(FATAL_ERROR "orv-geodb ${ARGN}: exit ${rc}, stderr '${err}'\n${out}")
    endif()
    set(output "${out}" PARENT_SCOPE)
endfunction()
expect_output("OSGB36 / British National Grid +UK +27700" find 27700)
expect_output("Amersfoort / RD New +Netherlands +28992" find "rd new")
expect_output("Units: [0-9]+" list units)
expect_output("BOUNDCRS" export UK "OSGB36 / British National Grid" --format wkt2)
set(wkt "${output}")
expect_output("\"type\": \"BoundCRS\"" export UK "OSGB36 / British National Grid"
    --format projjson)
expect_output("^\\+proj=pipeline .*\\+proj=tmerc" export UK "OSGB36 / British National Grid"
    --format proj)

# No command created a database (or anything else) in the data folder.
file(GLOB_RECURSE created ${SCRATCH}/*)
if(created)
    message(FATAL_ERROR "read-only commands created files: ${created}")
endif()

# The exported WKT2 imports in projinfo.
find_program(PROJINFO projinfo)
if(PROJINFO)
    execute_process(COMMAND ${PROJINFO} "${wkt}" -o PROJ -q
        RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0 OR NOT out MATCHES "tmerc")
        message(FATAL_ERROR "projinfo does not read the exported WKT2 (${rc}): ${err}\n${out}")
    endif()
endif()
file(REMOVE_RECURSE ${SCRATCH})
