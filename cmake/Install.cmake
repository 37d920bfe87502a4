# Where the programs and what the desktop needs of them go; follows the XDG folders.
include(GNUInstallDirs)
foreach(program orlop orlop-terminal orlop-defaults orlop-log orlop-browser)
    if(TARGET ${program})
        install(TARGETS ${program} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
    endif()
endforeach()
if(TARGET orlop-proxy-script)
    install(TARGETS orlop-proxy-script
            RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/orlop")
endif()
foreach(page orlop orlop-terminal orlop-defaults orlop-log orlop-browser)
    install(FILES "${CMAKE_SOURCE_DIR}/docs/man/${page}.1"
            DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
endforeach()
set(resources "${CMAKE_SOURCE_DIR}/resources")
foreach(program orlop-terminal orlop-defaults orlop-log)
    install(FILES "${resources}/completion/${program}.bash"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME ${program})
    install(FILES "${resources}/completion/_${program}"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions")
    install(FILES "${resources}/completion/${program}.fish"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
endforeach()
install(FILES "${resources}/dbus/com.tarnworks.AIH.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces")
install(FILES "${resources}/dbus/com.tarnworks.Orlop.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces")
configure_file("${resources}/dbus/com.tarnworks.Orlop.service.in"
               "${CMAKE_BINARY_DIR}/com.tarnworks.Orlop.service" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/com.tarnworks.Orlop.service"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services")
install(FILES "${resources}/desktop/com.tarnworks.Orlop.desktop"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${resources}/desktop/com.tarnworks.Orlop.metainfo.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES "${resources}/desktop/com.tarnworks.Orlop.mime.xml"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/mime/packages" RENAME com.tarnworks.Orlop.xml)
install(FILES "${resources}/icons/app/orlop.svg"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps"
        RENAME com.tarnworks.Orlop.svg)
install(FILES "${resources}/icons/mimetypes/application-x-orlop-request.svg"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/mimetypes")
if(TARGET orlop-browser)
    # As a folder, from which browsers load it unpacked; stores take what scripts/extension packs.
    install(DIRECTORY "${CMAKE_SOURCE_DIR}/extension/"
            DESTINATION "${CMAKE_INSTALL_DATADIR}/orlop/extension")
    install(CODE "set(host \"$<TARGET_FILE:orlop-browser>\")
        set(folder \"${CMAKE_INSTALL_BINDIR}\")")
    install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/InstallBrowserHosts.cmake")
endif()
