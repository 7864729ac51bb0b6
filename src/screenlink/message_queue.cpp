#include "screenlink/message_queue.h"

#include "screenlink/strip_code.h"

#include <algorithm>

namespace glimra::screenlink {

namespace {

/// Life, death, the end of a fight and cooldowns are news that must not wait behind an animation.
constexpr std::string_view kJumpToFront = "DUOVEe`[]{}";
/// Single characters that do not have to wait while the keyboard shows a fight or a death.
constexpr std::string_view kNeverHeldBack = "OREewxyz";
constexpr char kReplaceQueue = 'R';
constexpr char kSuppressBlink = 'c';
constexpr int kSuppressedCooldownMessages = 5;

/// Bytes of the UTF-8 character that begins at `start`. The add-on sends seven-bit characters only, but other
/// text in the queue must not be cut in the middle of a character either.
std::size_t characterLength(std::string_view text, std::size_t start) {
    std::size_t end = start + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        ++end;
    return end - start;
}

std::string takeFront(std::string& queue, std::size_t length) {
    std::string front = queue.substr(0, length);
    queue.erase(0, length);
    return front;
}

} // namespace

MessageQueue::MessageQueue(events::MessageState& messages, const events::EffectState& effects,
                           events::CooldownState& cooldowns)
    : m_messages(messages),
      m_effects(effects),
      m_cooldowns(cooldowns) {
}

void MessageQueue::appendToMessageQueue(std::string_view token) {
    if (token.empty())
        return;
    m_messages.messageQueue.with([token](std::string& queue) {
        if (token.front() == kReplaceQueue)
            queue = token;
        else if (kJumpToFront.find(token.front()) != std::string_view::npos)
            queue.insert(0, token);
        else
            queue += token;
    });
    if (m_arrived)
        m_arrived();
}

bool MessageQueue::handleMessageQueue() {
    if (!m_messages.currentMessage.empty())
        return false;
    return m_messages.messageQueue.with([this](std::string& queue) {
        const std::size_t length = queue.size();
        m_messages.currentMessage = takeNext(queue);
        return queue.size() != length;
    });
}

bool MessageQueue::isEmpty() const {
    return m_messages.messageQueue.with([](const std::string& queue) { return queue.empty(); });
}

std::string MessageQueue::takeNext(std::string& queue) {
    if (queue.empty())
        return {};

    // Both positions are found before a character is removed. If both lie before the pair, both characters
    // are removed and the message is V.
    const std::size_t pair = queue.find_first_of(kPrefixCharacters);
    const std::size_t life = queue.find('U');
    const std::size_t ghostEnd = queue.find('V');
    std::string urgent;
    for (const auto& [position, character] : {std::pair{life, 'U'}, std::pair{ghostEnd, 'V'}}) {
        // If there is no pair, `pair` is npos, and whatever was found lies before it.
        if (position < pair) {
            urgent = character;
            queue.erase(queue.find(character), 1);
        }
    }
    if (!urgent.empty())
        return urgent;

    const char first = queue.front();
    const std::size_t length = characterLength(queue, 0);
    if (kPrefixCharacters.find(first) != std::string_view::npos) {
        if (queue.size() < 2)
            return {};
        return takeFront(queue, 1 + characterLength(queue, 1));
    }
    if (kNeverHeldBack.find(first) != std::string_view::npos)
        return takeFront(queue, length);
    if (first == kSuppressBlink) {
        m_cooldowns.supressCooldownBlinkCounter = kSuppressedCooldownMessages;
        queue.erase(0, length);
        return {};
    }
    if (m_effects.combatAnimationPlaying || m_effects.deadAnimationPlaying)
        return {};
    return takeFront(queue, length);
}

} // namespace glimra::screenlink
