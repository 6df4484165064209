// Says what of the desktop's private and public functions works on this Mac, as one JSON report on standard
// output. Run by hand or by a workflow; ends with 0 whatever is missing.
//
//   mac_probe                 every check, each in a process of its own
//   mac_probe --check NAME    one check in this process
#include <sys/utsname.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>

#include "tools/mac_probe/checks.h"
#include "tools/mac_probe/probe_application.h"

namespace pintle {
namespace {

using nlohmann::json;

/// Long enough for the slowest check, and short enough for one that hangs.
constexpr unsigned kSecondsForOneCheck = 20;

std::string quoted(const std::string& text) {
    std::string safe = "'";
    for (const char letter : text)
        if (letter == '\'')
            safe += "'\\''";
        else
            safe += letter;
    return safe + "'";
}

json reportOf(const std::string& command) {
    FILE* const pipe = ::popen(command.c_str(), "r");
    if (!pipe) return {{"started", false}};
    std::string answer;
    std::array<char, 4096> buffer = {};
    while (const auto count = std::fread(buffer.data(), 1, buffer.size(), pipe))
        answer.append(buffer.data(), count);
    const int status = ::pclose(pipe);
    // A shell reports a signal of its child as a status of 128 and more.
    if (status != 0)
        return {{"ended_with", WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status)},
                {"answer", answer}};
    return json::parse(answer, nullptr, false);
}

json checkInAnotherProcess(const std::string& program, const std::string& name) {
    return reportOf(quoted(program) + " --check " + name);
}

/// What needs the toolkit is a program of its own next to this one, where it was built.
json viewsInAnotherProgram(const std::string& program) {
    const auto folder = std::filesystem::path(program).parent_path();
    return reportOf(quoted((folder / "mac_probe_views").string()));
}

json machine() {
    utsname names = {};
    if (::uname(&names) != 0) return nullptr;
    return {{"system", names.sysname}, {"release", names.release}, {"machine", names.machine}};
}

int run(int argc, char** argv) {
    const std::string program = argv[0];
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "--check" && argc == 3) {
        ::alarm(kSecondsForOneCheck);
        const auto found = probeChecks().find(argv[2]);
        if (found == probeChecks().end()) return 2;
        startProbeApplication();
        std::cout << found->second(program).dump() << '\n';
        return 0;
    }
    if (mode == "--post" && argc == 3) {
        postForProbe(argv[2]);
        return 0;
    }
    if (mode == "--find" && argc == 5) return findForProbe(argv[2], argv[3], argv[4]) ? 0 : 1;
    if (!mode.empty()) {
        std::cerr << "mac_probe [--check NAME]\n";
        return 2;
    }
    json report = {{"machine", machine()}};
    for (const auto& [name, check] : probeChecks()) report[name] = checkInAnotherProcess(program, name);
    report["views"] = viewsInAnotherProgram(program);
    std::cout << report.dump(2) << '\n';
    return 0;
}

}  // namespace
}  // namespace pintle

int main(int argc, char** argv) { return pintle::run(argc, argv); }
