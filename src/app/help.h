#pragma once

#include "app/outlets.h"
#include "events/event_state.h"
#include "platform/bundle.h"
#include "platform/run_loop.h"
#include "platform/workspace.h"

namespace glimra::app {

/// The windows that tell about the program, and its pages on the web. Main thread.
class Help {
public:
    struct Parts {
        platform::RunLoop& runLoop;
        platform::Workspace& workspace;
        const platform::Bundle& bundle;
        Outlets& outlets;
        events::MessageState& messages;
    };

    explicit Help(const Parts& parts) : m_parts(parts) {}

    /// Fills the help window.
    void loadHelpText();

    void aboutMenuItem();
    void openHomePage();
    void openDownloadsPage();

    // Both show the help window. The button's comes to the front once all that was posted before is done.
    void helpMenuItem();
    void myBtnClicked();

private:
    Parts m_parts;
};

} // namespace glimra::app
