# The run command on a machine without a display (no DISPLAY, no WAYLAND_DISPLAY, no
# QT_QPA_PLATFORM): scripts/open-dialogs.sh says so in its first line, renders every dialog to
# PNG files (the selection dialog and the editor among them) and says where they are.
# Called by ctest with -DSCRIPT=... -DPROGRAM=<orv-coordsys> -DFOLDER=...
file(REMOVE_RECURSE ${FOLDER})
execute_process(COMMAND ${CMAKE_COMMAND} -E env --unset=DISPLAY --unset=WAYLAND_DISPLAY
        --unset=QT_QPA_PLATFORM bash ${SCRIPT} ${PROGRAM} ${FOLDER}
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 600)
if(NOT rc EQUAL 0)
    message(FATAL_ERROR "open-dialogs.sh without a display: exit ${rc}\n${out}\n${err}")
endif()
if(NOT out MATCHES "^No display[^\n]*\nThe dialogs are in ${FOLDER} \\(([0-9]+) PNG files\\)\\.\n$")
    message(FATAL_ERROR "open-dialogs.sh without a display said:\n${out}")
endif()
set(count ${CMAKE_MATCH_1})
file(GLOB pictures ${FOLDER}/*.png)
list(LENGTH pictures found)
if(NOT found EQUAL count OR count LESS 20)
    message(FATAL_ERROR "${count} pictures reported, ${found} in ${FOLDER}")
endif()
foreach(name dialog-select-coordinate-system editor-user-system editor-predefined wizard-page00)
    file(READ ${FOLDER}/${name}.png head LIMIT 4 HEX)
    if(NOT head STREQUAL "89504e47")
        message(FATAL_ERROR "${name}.png is missing or no PNG file")
    endif()
endforeach()

# With a display the script starts the program with the options given: here the usage.
execute_process(COMMAND ${CMAKE_COMMAND} -E env DISPLAY=:99 bash ${SCRIPT} ${PROGRAM} ${FOLDER}
        --help
    RESULT_VARIABLE rc OUTPUT_VARIABLE out TIMEOUT 60)
if(NOT rc EQUAL 0 OR NOT out MATCHES "Select Coordinate System")
    message(FATAL_ERROR "open-dialogs.sh --help with a display: exit ${rc}\n${out}")
endif()
file(REMOVE_RECURSE ${FOLDER})
