# Where the programs and what the desktop needs of them go; follows the XDG folders. COMPONENTs:
# core (terminal, settings, log), window, browser_host.
include(GNUInstallDirs)
set(ORLOP_ZSH_FOLDER "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" CACHE STRING
    "Where zsh looks for completions")
set(resources "${CMAKE_SOURCE_DIR}/resources")

function(install_program name component)
    install(TARGETS ${name} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${component})
    install(FILES "${CMAKE_SOURCE_DIR}/docs/man/${name}.1"
            DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT ${component})
endfunction()

foreach(program orlop-terminal orlop-defaults orlop-log)
    install_program(${program} core)
    install(FILES "${resources}/completion/${program}.bash"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME ${program}
            COMPONENT core)
    install(FILES "${resources}/completion/_${program}"
            DESTINATION "${ORLOP_ZSH_FOLDER}" COMPONENT core)
    install(FILES "${resources}/completion/${program}.fish"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT core)
endforeach()
install(TARGETS orlop-proxy-script
        RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/orlop" COMPONENT core)
install(FILES "${resources}/dbus/com.tarnworks.Orlop.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces" COMPONENT core)

install_program(orlop-browser browser_host)
# As a folder, from which browsers load it unpacked; stores take what scripts/extension packs.
install(DIRECTORY "${CMAKE_SOURCE_DIR}/extension/"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/orlop/extension" COMPONENT browser_host)
install(CODE "set(host \"$<TARGET_FILE:orlop-browser>\")
    set(folder \"${CMAKE_INSTALL_BINDIR}\")" COMPONENT browser_host)
install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/InstallBrowserHosts.cmake" COMPONENT browser_host)

if(NOT ORLOP_GUI)
    return()
endif()
install_program(orlop window)
install(FILES "${resources}/dbus/com.tarnworks.AIH.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces" COMPONENT window)
# Once it is known where the program goes, which --prefix may say.
install(CODE "set(CMAKE_INSTALL_FULL_BINDIR \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    configure_file(\"${resources}/dbus/com.tarnworks.Orlop.service.in\"
                   \"${CMAKE_BINARY_DIR}/com.tarnworks.Orlop.service\" @ONLY)" COMPONENT window)
install(FILES "${CMAKE_BINARY_DIR}/com.tarnworks.Orlop.service"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services" COMPONENT window)
install(FILES "${resources}/desktop/com.tarnworks.Orlop.desktop"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT window)
install(FILES "${resources}/desktop/com.tarnworks.Orlop.metainfo.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo" COMPONENT window)
install(FILES "${resources}/desktop/com.tarnworks.Orlop.mime.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages" RENAME com.tarnworks.Orlop.xml
        COMPONENT window)
include(InstallIcons)
install(CODE "set(data \"${CMAKE_INSTALL_DATADIR}\")" COMPONENT window)
install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/UpdateDatabases.cmake" COMPONENT window)
