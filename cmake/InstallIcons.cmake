# The icons as themes want them: the drawing itself, and pictures of it in each size for whoever
# does not draw.
set(icons "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
set(pictures "${CMAKE_BINARY_DIR}/icons")
add_executable(orlop_render_icon "${CMAKE_CURRENT_LIST_DIR}/render_icon.cpp")
target_link_libraries(orlop_render_icon PRIVATE orlop_conventions Qt6::Svg)

function(install_icon drawing context name)
    install(FILES "${drawing}" DESTINATION "${icons}/scalable/${context}" RENAME ${name}.svg
            COMPONENT window)
    foreach(size 16 22 24 32 48 64 128 256 512)
        set(folder "${size}x${size}/${context}")
        set(picture "${pictures}/${folder}/${name}.png")
        add_custom_command(OUTPUT "${picture}"
            COMMAND "${CMAKE_COMMAND}" -E make_directory "${pictures}/${folder}"
            COMMAND orlop_render_icon "${drawing}" ${size} "${picture}"
            DEPENDS "${drawing}" orlop_render_icon VERBATIM)
        install(FILES "${picture}" DESTINATION "${icons}/${folder}" COMPONENT window)
        set_property(GLOBAL APPEND PROPERTY orlop_pictures "${picture}")
    endforeach()
endfunction()
install_icon("${resources}/icons/app/orlop.svg" apps com.tarnworks.Orlop)
# A Flatpak hands out no icon whose name does not begin with the application's.
install_icon("${resources}/icons/mimetypes/orlop-request.svg" mimetypes com.tarnworks.Orlop.request)
install(FILES "${resources}/icons/actions/orlop-symbolic.svg"
        DESTINATION "${icons}/symbolic/apps" RENAME com.tarnworks.Orlop-symbolic.svg
        COMPONENT window)
get_property(all_pictures GLOBAL PROPERTY orlop_pictures)
add_custom_target(orlop_icons ALL DEPENDS ${all_pictures})
