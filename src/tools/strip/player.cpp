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
                          [](const Stage& stage) { std::cout << "stage " << stage.name << std::endl; }},
               action);
}

void Player::send(const screenlink::Token& token) {
    const screenlink::TokenFrames frames = screenlink::encodeToken(token);
    m_painter.paint(frames.announce);
    hold(m_options.hold);
    m_painter.paint(frames.confirm);
    const std::chrono::duration<double> painted = std::chrono::steady_clock::now().time_since_epoch();
    if (m_options.timestamps)
        std::cout << nlohmann::json{{"t", painted.count()}, {"token", token.text()}}.dump() << std::endl;
    hold(m_options.hold);
    m_painter.paint(screenlink::kDarkFrame);
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
