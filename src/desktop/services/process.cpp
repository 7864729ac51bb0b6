#include "desktop/services/process.h"

#include "desktop/services/no_bus.h"
#include "desktop/services/unique_fd.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kPollPause = 10ms;
/// How long to wait for a killed process to end; one that is stuck in a system call may never end.
constexpr auto kKillPatience = 200ms;
constexpr int kCannotRun = 127;

enum class Ties { Child, Detached };

/// A command in the form that exec needs. It is prepared before the fork, because the child must not allocate
/// memory.
class PreparedCommand {
public:
    explicit PreparedCommand(const Command& command)
        : m_path(findProgram(command.program).value_or("")),
          m_directory(command.workingDirectory),
          m_null(::open("/dev/null", O_RDWR | O_CLOEXEC)) {
        m_words.push_back(command.program);
        m_words.insert(m_words.end(), command.arguments.begin(), command.arguments.end());
        for (std::string& word : m_words)
            m_argv.push_back(word.data());
        m_argv.push_back(nullptr);
        // What keeps us from starting a bus is none of its business.
        const std::string noBus = std::string(kSessionBusVariable) + "=" + kNoBusAddress;
        for (char** each = environ; *each != nullptr; ++each)
            if (*each != noBus)
                m_environment.push_back(*each);
        m_environment.push_back(nullptr);
    }

    /// False when the program does not exist, or when an argument contains a zero byte, at which the system
    /// would cut it.
    bool isRunnable() const {
        return !m_path.empty() && std::none_of(m_words.begin(), m_words.end(), [](const std::string& word) {
            return word.find('\0') != std::string::npos;
        });
    }
    [[noreturn]] void become() const;

private:
    std::string m_path;
    std::string m_directory;
    UniqueFd m_null;
    std::vector<std::string> m_words;
    std::vector<char*> m_argv;
    std::vector<char*> m_environment;
};

/// Runs between fork and exec, so it may only make system calls.
void PreparedCommand::become() const {
    if (!m_directory.empty() && ::chdir(m_directory.c_str()) != 0)
        ::_exit(kCannotRun);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(m_null.get(), descriptor);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execve(m_path.c_str(), m_argv.data(), m_environment.data());
    ::_exit(kCannotRun);
}

void resetSignalHandlers() {
    for (int signal = 1; signal < NSIG; ++signal)
        ::signal(signal, SIG_DFL);
}

/// Blocks all signals in this thread. Otherwise one of our handlers could run in the forked child and notify
/// us of a signal that was not meant for us.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t m_before{};
};

/// Forks a process for the command and returns its id. For a detached command, that process forks once more
/// and ends.
pid_t forkFor(const PreparedCommand& command, Ties ties) {
    const BlockedSignals blocked;
    const pid_t pid = ::fork();
    // Parent and child both do this, since neither knows which runs first.
    if (ties == Ties::Child && pid >= 0)
        ::setpgid(pid, pid);
    if (pid != 0)
        return pid;
    resetSignalHandlers();
    if (ties == Ties::Detached && (::setsid() < 0 || ::fork() != 0))
        ::_exit(0);
    command.become();
}

/// Returns the wait status once the process has ended; none when the deadline passes or a stop is requested
/// first.
std::optional<int> waitFor(pid_t pid, Clock::time_point deadline, const std::stop_token& stop) {
    int status = 0;
    errno = 0;
    while (::waitpid(pid, &status, WNOHANG) != pid) {
        // If our parent has set SIGCHLD to be ignored, an ended process leaves no status.
        if (errno == ECHILD)
            return status;
        if (stop.stop_requested() || Clock::now() >= deadline)
            return std::nullopt;
        std::this_thread::sleep_for(kPollPause);
    }
    return status;
}

bool isRunnableFile(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

std::optional<std::string> findProgram(std::string_view program) {
    const std::string name(program);
    if (name.empty() || name.find('\0') != std::string::npos)
        return std::nullopt;
    if (name.find('/') != std::string::npos)
        return isRunnableFile(name) ? std::optional(name) : std::nullopt;
    const char* const path = std::getenv("PATH");
    std::string_view folders = path == nullptr ? "/usr/local/bin:/usr/bin:/bin" : path;
    while (!folders.empty()) {
        const std::string_view folder = folders.substr(0, folders.find(':'));
        folders.remove_prefix(std::min(folder.size() + 1, folders.size()));
        const std::string candidate = std::string(folder) + "/" + name;
        // A relative folder would make the result depend on our working folder.
        if (folder.starts_with('/') && isRunnableFile(candidate))
            return candidate;
    }
    return std::nullopt;
}

bool startDetached(const Command& command) {
    const PreparedCommand prepared(command);
    const pid_t pid = prepared.isRunnable() ? forkFor(prepared, Ties::Detached) : -1;
    if (pid < 0)
        return false;
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    return true;
}

std::optional<int> runToEnd(const Command& command, std::chrono::milliseconds limit,
                            const std::stop_token& stop) {
    const PreparedCommand prepared(command);
    const pid_t pid = prepared.isRunnable() ? forkFor(prepared, Ties::Child) : -1;
    if (pid < 0)
        return std::nullopt;
    const std::optional<int> status = waitFor(pid, Clock::now() + limit, stop);
    if (!status) {
        ::kill(-pid, SIGKILL);
        waitFor(pid, Clock::now() + kKillPatience, {});
    }
    return status && WIFEXITED(*status) ? std::optional(WEXITSTATUS(*status)) : std::nullopt;
}

} // namespace glimra::desktop
