// What the process needs before anything else runs in it.
#include "Process.h"

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include <langinfo.h>

void prepareProcess()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);

    std::setlocale(LC_ALL, "");
    if (std::string_view(nl_langinfo(CODESET)) != "UTF-8")
        setenv("LC_ALL", "C.UTF-8", 1);
}
