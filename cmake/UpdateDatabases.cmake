# Tells desktops of the types and the entry that were installed below `data`. A package leaves that to
# whoever installs it.
if(NOT "$ENV{DESTDIR}" STREQUAL "")
    return()
endif()

function(update tool folder)
    find_program(program_${tool} ${tool})
    if(program_${tool})
        message(STATUS "Updating: ${folder}")
        execute_process(COMMAND "${program_${tool}}" "${folder}")
    endif()
endfunction()

update(update-mime-database "${CMAKE_INSTALL_PREFIX}/${data}/mime")
update(update-desktop-database "${CMAKE_INSTALL_PREFIX}/${data}/applications")
