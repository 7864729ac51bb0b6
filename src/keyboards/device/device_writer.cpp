#include "keyboards/device/device_writer.h"

#include "keyboards/device/writer_plan.h"
#include "platform/locked.h"
#include "platform/monotonic_clock.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace glimra::keyboards {

namespace {

/// How long a writer waits until the device of the one before it is closed.
constexpr Duration kHandOverLimit = std::chrono::seconds(5);

/// Decides which events are worth reporting: none is reported twice before the device is found.
class Announcer {
public:
    bool isNews(const DeviceEvent& event) {
        switch (event.kind) {
        case DeviceEvent::Kind::Found:
            m_told.clear();
            return true;
        case DeviceEvent::Kind::Lost:
            m_lossTold = true;
            return true;
        case DeviceEvent::Kind::Absent:
            break;
        }
        if (m_told.size() == kMostTexts || std::ranges::find(m_told, event.text) != m_told.end())
            return false;
        m_told.push_back(event.text);
        // The first "absent" after "lost" only repeats that the device is gone.
        return !std::exchange(m_lossTold, false);
    }

private:
    static constexpr std::size_t kMostTexts = 8;

    std::vector<std::string> m_told;
    bool m_lossTold = false;
};

} // namespace

/// What the main thread and the writer's thread share. It lives until both have let go of it.
struct DeviceWriter::Shared {
    /// What the main thread asked for and the writer has not taken yet.
    struct Wanted {
        std::optional<KeyboardModel> model;
        bool resendAll = false;

        bool isAnything() const { return model || resendAll; }
    };

    platform::Locked<Wanted> wanted;
    platform::Locked<Report> report;
    std::shared_ptr<const WakeEvent> after;
    WakeEvent wake;
    WakeEvent stop;
    WakeEvent done;

    /// Changes what is wanted, and wakes the writer. When something was wanted already, the writer has been
    /// woken for that.
    template <class Change>
    void want(Change change) {
        const bool isAsleep = wanted.with([&](Wanted& current) {
            const bool wasNothing = !current.isAnything();
            change(current);
            return wasNothing;
        });
        if (isAsleep)
            wake.set();
    }
};

/// What the writer's thread does: the steps that the plan decides.
class DeviceWriter::Loop {
public:
    Loop(Shared& shared, KeyboardDevice& device) : m_shared(shared), m_device(device) {}

    void run() {
        while (!m_shared.stop.isSet()) {
            takeWanted();
            const WriterPlan::Step step = m_plan.next(platform::monotonicNow());
            if (step.kind == WriterPlan::Step::Kind::Search)
                search();
            else if (step.kind == WriterPlan::Step::Kind::Write)
                write(step.keys);
            else
                wait(step);
        }
        if (m_plan.isOpen())
            m_device.close();
    }

private:
    void takeWanted() {
        const Shared::Wanted taken =
            m_shared.wanted.with([](Shared::Wanted& wanted) { return std::exchange(wanted, {}); });
        if (taken.model)
            m_plan.show(*taken.model, platform::monotonicNow());
        if (!taken.resendAll)
            return;
        if (m_plan.isOpen())
            m_device.claim();
        m_plan.resendAll(platform::monotonicNow());
    }

    void search() {
        const OpenResult result = m_device.open(m_shared.stop);
        if (result.found)
            m_plan.found(m_device.pace(), platform::monotonicNow());
        else
            m_plan.notFound(result.retryWithin, platform::monotonicNow());
        if (!m_shared.stop.isSet())
            tell({result.found ? DeviceEvent::Kind::Found : DeviceEvent::Kind::Absent, result.text,
                  result.name});
    }

    void write(std::span<const KeyColor> keys) {
        const DeviceStatus status = m_device.write(keys);
        if (status.kind != DeviceStatus::Kind::Lost)
            m_plan.written(platform::monotonicNow());
        heed(status);
        // A slow device may always have its next frame due at once. `wait`, which reads what the device has
        // to say, would then never be reached.
        if (m_plan.isOpen() && waitForInput(-1, m_device.watchedFd(), Time::zero()).second)
            heed(m_device.serve());
    }

    void heed(const DeviceStatus& status) {
        if (status.kind == DeviceStatus::Kind::AllKeysNeeded)
            m_plan.resendAll(platform::monotonicNow());
        if (status.kind == DeviceStatus::Kind::LookAgain)
            m_plan.lookAgain(platform::monotonicNow());
        if (status.kind != DeviceStatus::Kind::Lost)
            return;
        m_device.close();
        m_plan.lost(platform::monotonicNow());
        tell({DeviceEvent::Kind::Lost, status.text});
    }

    void wait(const WriterPlan::Step& step) {
        const WakeEvent& alarm = step.frameIsDue ? m_shared.stop : m_shared.wake;
        const Woken woken = waitForInput(alarm.fd(), m_device.watchedFd(), step.until);
        // Cleared before the loop takes what is wanted: what is wanted after that must wake the thread anew.
        if (woken.first)
            m_shared.wake.clear();
        if (woken.second)
            heed(m_device.serve());
    }

    void tell(const DeviceEvent& event) {
        if (!m_announcer.isNews(event))
            return;
        m_shared.report.with([&](const Report& report) {
            if (report)
                report(event);
        });
    }

    Shared& m_shared;
    KeyboardDevice& m_device;
    WriterPlan m_plan;
    Announcer m_announcer;
};

DeviceWriter::DeviceWriter(std::unique_ptr<KeyboardDevice> device, Report report,
                           std::shared_ptr<const WakeEvent> after)
    : m_shared(std::make_shared<Shared>()) {
    m_shared->report.set(std::move(report));
    m_shared->after = std::move(after);
    m_thread = std::thread([shared = m_shared, owned = std::move(device)]() mutable {
        if (shared->after)
            waitForInput(shared->after->fd(), -1, platform::monotonicNow() + kHandOverLimit);
        Loop(*shared, *owned).run();
        owned.reset();
        shared->done.set();
    });
}

DeviceWriter::~DeviceWriter() {
    stop();
}

void DeviceWriter::show(const KeyboardModel& model) {
    m_shared->want([&](Shared::Wanted& wanted) { wanted.model = model; });
}

void DeviceWriter::resendAll() {
    m_shared->want([](Shared::Wanted& wanted) { wanted.resendAll = true; });
}

void DeviceWriter::stop() {
    askToStop();
    if (!m_thread.joinable())
        return;
    if (waitForInput(m_shared->done.fd(), -1, platform::monotonicNow() + kStopLimit).first)
        m_thread.join();
    else
        m_thread.detach();
}

std::shared_ptr<const WakeEvent> DeviceWriter::leave() {
    askToStop();
    if (m_thread.joinable())
        m_thread.detach();
    return {m_shared, &m_shared->done};
}

void DeviceWriter::askToStop() {
    m_shared->report.set(nullptr);
    m_shared->stop.set();
    m_shared->wake.set();
}

} // namespace glimra::keyboards
