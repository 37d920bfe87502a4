# Tells the browsers of all users of the host `host`, which is installed into `folder` below the
# prefix. They look in folders of their own, which no prefix moves; an installation elsewhere than
# below /usr is one user's, for whom `orlop-browser --install` does it. It also does it for Brave and
# Vivaldi, which are sure to look in the user's own folder.
if(NOT CMAKE_INSTALL_PREFIX MATCHES "^/usr(/|$)")
    return()
endif()

function(install_host browser)
    execute_process(
        COMMAND "${host}" --print-manifest --browser ${browser}
            --program "${CMAKE_INSTALL_PREFIX}/${folder}/orlop-browser"
        OUTPUT_VARIABLE manifest COMMAND_ERROR_IS_FATAL ANY)
    foreach(place IN LISTS ARGN)
        set(file "$ENV{DESTDIR}${place}/com.tarnworks.orlop.json")
        message(STATUS "Installing: ${file}")
        file(WRITE "${file}" "${manifest}")
        list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${file}")
    endforeach()
    set(CMAKE_INSTALL_MANIFEST_FILES "${CMAKE_INSTALL_MANIFEST_FILES}" PARENT_SCOPE)
endfunction()

install_host(chromium /etc/chromium/native-messaging-hosts
    /etc/opt/chrome/native-messaging-hosts /etc/opt/edge/native-messaging-hosts)
install_host(firefox /usr/lib/mozilla/native-messaging-hosts)
