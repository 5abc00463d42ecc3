#include "testmain.h"

#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::map<std::string, TestMain::Run, std::less<>>& entries() {
    static std::map<std::string, TestMain::Run, std::less<>> all;
    return all;
}

} // namespace

TestMain::Entry::Entry(const char* sourceFile, Run run) {
    std::string_view name(sourceFile);
    name.remove_prefix(name.find_last_of('/') + 1);
    name.remove_suffix(name.size() - name.find('.'));
    entries().emplace(name, run);
}

int main(int argc, char* argv[]) {
    const auto chosen = argc > 1 ? entries().find(std::string_view(argv[1])) : entries().end();
    if (chosen == entries().end()) {
        std::fprintf(stderr, "usage: %s TEST [functions and options]\nTEST is one of\n", argv[0]);
        for (const auto& entry : entries()) {
            std::fprintf(stderr, "    %s\n", entry.first.c_str());
        }
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    std::vector<char*> arguments(argv, argv + argc + 1); // with the null at its end
    arguments.erase(arguments.begin() + 1);
    return chosen->second(argc - 1, arguments.data());
}
