#pragma once

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace glimra::tests {

/// A program that ends, at the latest, with this object. `program` is found in PATH; `arguments` begin with
/// its name.
class ChildProcess {
public:
    ChildProcess(const std::string& program, std::vector<std::string> arguments,
                 const std::string& displayName = {}) {
        std::vector<char*> argv;
        for (std::string& argument : arguments)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        m_pid = ::fork();
        if (m_pid < 0)
            throw std::runtime_error("fork failed");
        if (m_pid != 0)
            return;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (!displayName.empty())
            ::setenv("DISPLAY", displayName.c_str(), 1);
        ::execvp(program.c_str(), argv.data());
        ::_exit(127);
    }
    ~ChildProcess() { end(SIGKILL); }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return m_pid; }
    void signal(int number) const {
        if (m_pid > 0)
            ::kill(m_pid, number);
    }
    void end(int number) {
        signal(number);
        if (m_pid > 0)
            wait();
    }
    /// The program's exit status once it has ended, -1 if a signal ended it.
    int wait() {
        int status = 0;
        while (::waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
        }
        m_pid = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t m_pid = 0;
};

/// Runs a program to its end; its exit status, 127 when there is no such program.
inline int run(const std::vector<std::string>& arguments, const std::string& displayName) {
    return ChildProcess(arguments.front(), arguments, displayName).wait();
}

} // namespace glimra::tests
