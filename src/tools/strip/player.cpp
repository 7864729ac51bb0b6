#include "tools/strip/player.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace glimra::tools {

namespace {

template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

void printNow(const char* kind, const std::string& what) {
    const std::chrono::duration<double> now = std::chrono::steady_clock::now().time_since_epoch();
    std::cout << nlohmann::json{{"t", now.count()}, {kind, what}}.dump() << std::endl;
}

} // namespace

Player::Player(StripPainter& painter, Waiter& waiter, PlayerOptions options)
    : m_painter(painter),
      m_waiter(waiter),
      m_options(options) {
}

void Player::play(const Action& action) {
    std::visit(Overloaded{[this](const SendToken& send) { this->send(send.token); },
                          [this](const ShowFrame& show) { m_painter.paint(show.frame); },
                          [this](const Wait& wait) { hold(wait.time); },
                          [this](const Stage& stage) { tell(stage); }},
               action);
}

void Player::send(const screenlink::Token& token) {
    const screenlink::TokenFrames frames = screenlink::encodeToken(token);
    m_painter.paint(frames.announce);
    hold(m_options.hold);
    m_painter.paint(frames.confirm);
    if (m_options.timestamps)
        printNow("token", token.text());
    hold(m_options.hold);
    m_painter.paint(screenlink::kDarkFrame);
}

void Player::tell(const Stage& stage) {
    if (m_options.timestamps)
        printNow("stage", stage.name);
    else
        std::cout << "stage " << stage.name << std::endl;
}

void Player::hold(std::chrono::milliseconds time) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + time;
    while (Clock::now() < end) {
        if (m_waiter.wait({m_painter.fileDescriptor()},
                          std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now())))
            m_painter.serveEvents();
    }
}

void Player::stay() {
    for (;;) {
        m_waiter.wait({m_painter.fileDescriptor()});
        m_painter.serveEvents();
    }
}

void Player::awaitInput(int file) {
    while (m_waiter.wait({m_painter.fileDescriptor(), file}) != file)
        m_painter.serveEvents();
}

} // namespace glimra::tools
