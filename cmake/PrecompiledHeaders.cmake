# Headers of Qt and of the standard library that nearly every source reads, compiled once for all
# targets of a kind. They are on no include path: a source that forgets one of them still fails in
# the builds that precompile nothing (clang's, and that of the static analysis).
#
# vantrel_add_precompiled_headers(NAME x LIBRARIES ... HEADERS ...)
# makes a target "x" whose headers others take with target_precompile_headers(... REUSE_FROM x). They
# must be compiled with the same options, and so link the same libraries of Qt.
function(vantrel_add_precompiled_headers)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME" "LIBRARIES;HEADERS")
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${arg_NAME}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "// Nothing but the headers that are precompiled.\n")
  add_library(${arg_NAME} OBJECT ${source})
  target_compile_features(${arg_NAME} PUBLIC cxx_std_20)
  target_link_libraries(${arg_NAME} PRIVATE vantrel_compile_options ${arg_LIBRARIES})
  target_precompile_headers(${arg_NAME} PRIVATE ${arg_HEADERS})
endfunction()

set(vantrel_std_headers
  <algorithm> <array> <atomic> <cerrno> <chrono> <deque> <filesystem> <functional> <future> <memory> <mutex>
  <optional> <string> <string_view> <utility> <variant> <vector>)
set(vantrel_core_header_list
  <QByteArray> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QList> <QMap> <QObject> <QRect> <QSet> <QString>
  <QStringList> <QStringView> <QThread> <QTimer> ${vantrel_std_headers})

vantrel_add_precompiled_headers(NAME vantrel_core_headers LIBRARIES Qt6::Core HEADERS ${vantrel_core_header_list})
