#include "desktop/services/process.h"

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
/// How long a killed process may take to be gone; one that hangs in the system takes for ever.
constexpr auto kKillPatience = 200ms;
constexpr int kCannotRun = 127;

enum class Ties { Child, Detached };

/// A command in the form that the system takes, made before the fork: nothing may be allocated after it.
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
    }

    /// Where no such program is, or an argument that the system would cut short at a zero byte, nothing is
    /// run.
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
};

/// What may be done between fork and exec: system calls alone.
void PreparedCommand::become() const {
    if (!m_directory.empty() && ::chdir(m_directory.c_str()) != 0)
        ::_exit(kCannotRun);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(m_null.get(), descriptor);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execv(m_path.c_str(), m_argv.data());
    ::_exit(kCannotRun);
}

void resetSignalHandlers() {
    for (int signal = 1; signal < NSIG; ++signal)
        ::signal(signal, SIG_DFL);
}

/// Blocks every signal in this thread: a handler of ours that ran in a forked child would speak to us as if
/// the signal had been meant for us.
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

/// The id of the process that was forked for the command. A detached one has forked once more and ends.
pid_t forkFor(const PreparedCommand& command, Ties ties) {
    const BlockedSignals blocked;
    const pid_t pid = ::fork();
    // Both sides put the child into its group, as neither can know who comes first.
    if (ties == Ties::Child && pid >= 0)
        ::setpgid(pid, pid);
    if (pid != 0)
        return pid;
    resetSignalHandlers();
    if (ties == Ties::Detached && (::setsid() < 0 || ::fork() != 0))
        ::_exit(0);
    command.become();
}

/// The wait status once the process has ended; none when it goes on beyond the deadline or a stop.
std::optional<int> waitFor(pid_t pid, Clock::time_point deadline, const std::stop_token& stop) {
    int status = 0;
    errno = 0;
    while (::waitpid(pid, &status, WNOHANG) != pid) {
        // Where SIGCHLD is ignored, as whoever has started us may have arranged, the end comes without a
        // status.
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
        // A relative folder would make the answer depend on where we happen to run.
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
