# Reading the headers of the standard library and of Qt takes longer than compiling most sources.
# They are read once for everything without Gui and once for everything with it. Sources include
# what they use all the same: scripts/check-layers compiles each header without them.
set(core_headers
    <algorithm> <array> <atomic> <chrono> <cstdint> <deque> <functional> <limits> <map> <memory>
    <mutex> <optional> <string> <string_view> <thread> <unordered_map> <utility> <vector>
    <QByteArray> <QCoreApplication> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QList>
    <QLocale> <QObject> <QSet> <QString> <QStringList> <QVariant> <QVariantMap>)
set(gui_headers
    <QAction> <QApplication> <QBoxLayout> <QCheckBox> <QComboBox> <QDialog> <QDialogButtonBox>
    <QEvent> <QFontMetrics> <QIcon> <QKeyEvent> <QLabel> <QLineEdit> <QMenu> <QPainter> <QPalette>
    <QPushButton> <QTimer> <QWidget>)

# The definitions must be those of the targets that use the result.
function(orlop_precompiled_headers name)
    cmake_parse_arguments(arg "" "" "LINKS;HEADERS" ${ARGN})
    add_library(${name} STATIC "${CMAKE_SOURCE_DIR}/cmake/empty.cpp")
    target_link_libraries(${name} PRIVATE orlop_conventions ${arg_LINKS})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()
orlop_precompiled_headers(orlop_core_headers LINKS Qt6::Core HEADERS ${core_headers})
if(ORLOP_GUI)
    orlop_precompiled_headers(orlop_gui_headers LINKS Qt6::Widgets
        HEADERS ${core_headers} ${gui_headers})
endif()
