# Headers of Qt and the standard library that most sources include, read once for all of them.
#
# The sanitizer presets only: in the others each source is read with its own includes alone, so a
# missing one shows there. Never a header of this project, which would rebuild everything, nor one of
# QGuiApplication or QApplication: it makes qApp a cast to that class in every source.

option(VX_PRECOMPILE_HEADERS "Read Qt's headers once instead of in each source" OFF)

# ccache wants to be told that this is all right.
if(VX_PRECOMPILE_HEADERS AND CMAKE_CXX_COMPILER_LAUNCHER)
    list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros)
endif()

set(vx_frequent_headers
    <algorithm> <array> <atomic> <functional> <memory> <optional> <thread> <vector>
    <QtCore/QCommandLineParser> <QtCore/QCoreApplication> <QtCore/QDebug> <QtCore/QDir>
    <QtCore/QElapsedTimer> <QtCore/QEventLoop> <QtCore/QFile> <QtCore/QJsonArray>
    <QtCore/QJsonDocument> <QtCore/QPointer> <QtCore/QProcess> <QtCore/QRegularExpression>
    <QtCore/QTemporaryDir> <QtCore/QTimer> <QtCore/QUrlQuery>
    <QtNetwork/QHttpMultiPart> <QtNetwork/QNetworkProxy> <QtNetwork/QNetworkReply>
    <QtNetwork/QSslConfiguration> <QtNetwork/QTcpServer> <QtNetwork/QTcpSocket>
    <QtWidgets/QDialogButtonBox> <QtWidgets/QLabel> <QtWidgets/QLineEdit>
    <QtWidgets/QMessageBox> <QtWidgets/QPushButton> <QtWidgets/QVBoxLayout>)

# A library reads them for itself: its visibility differs.
function(vx_precompile_headers library)
    if(VX_PRECOMPILE_HEADERS)
        target_precompile_headers(${library} PRIVATE ${vx_frequent_headers})
    endif()
endfunction()

# Programs and the static libraries that they are made of share one. A test's moc file is included
# by the test, so what moc leaves to be compiled is nearly empty.
function(vx_use_precompiled_headers target)
    if(VX_PRECOMPILE_HEADERS)
        target_precompile_headers(${target} REUSE_FROM vx_precompiled)
        if(target MATCHES "^tst_")
            set_source_files_properties(
                "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp"
                PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
        endif()
    endif()
endfunction()

# It must not know more macros than its users, and Qt's targets define one each; so it takes the
# folders alone.
if(VX_PRECOMPILE_HEADERS)
    file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/precompiled.cpp" CONTENT "")
    add_library(vx_precompiled STATIC "${PROJECT_BINARY_DIR}/precompiled.cpp")
    target_link_libraries(vx_precompiled PRIVATE vx_compiler Qt6::Core)
    target_include_directories(vx_precompiled SYSTEM PRIVATE
        $<TARGET_PROPERTY:Qt6::Gui,INTERFACE_INCLUDE_DIRECTORIES>
        $<TARGET_PROPERTY:Qt6::Network,INTERFACE_INCLUDE_DIRECTORIES>
        $<TARGET_PROPERTY:Qt6::Widgets,INTERFACE_INCLUDE_DIRECTORIES>)
    target_precompile_headers(vx_precompiled PRIVATE ${vx_frequent_headers})
    set_target_properties(vx_precompiled PROPERTIES AUTOMOC OFF AUTORCC OFF)
endif()
