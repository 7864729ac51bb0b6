#include "screenlink/message_queue.h"

#include <gtest/gtest.h>

namespace glimra::screenlink {
namespace {

class MessageQueueTest : public testing::Test {
protected:
    std::string queued() const { return messages.messageQueue.copy(); }
    /// One tick with a free buffer; what it took.
    std::string take() {
        messages.currentMessage.clear();
        queue.handleMessageQueue();
        return messages.currentMessage;
    }
    void fill(std::string content) { messages.messageQueue.set(std::move(content)); }

    events::MessageState messages;
    events::EffectState effects;
    events::CooldownState cooldowns;
    MessageQueue queue{messages, effects, cooldowns};
};

TEST_F(MessageQueueTest, InsertionRule) {
    fill("abc");
    queue.appendToMessageQueue("x");
    EXPECT_EQ(queued(), "abcx");
    queue.appendToMessageQueue("`A");
    queue.appendToMessageQueue("D"); // a later front insertion goes ahead of an earlier one
    EXPECT_EQ(queued(), "D`Aabcx");
    for (const char front : std::string("DUOVEe`[]{}")) {
        fill("z");
        queue.appendToMessageQueue(std::string(1, front));
        EXPECT_EQ(queued(), std::string(1, front) + "z");
    }
    queue.appendToMessageQueue("R");
    EXPECT_EQ(queued(), "R");
    queue.appendToMessageQueue(std::string(1, '\0'));
    EXPECT_EQ(queued(), std::string("R\0", 2));
}

TEST_F(MessageQueueTest, TakesOneAndWaitsWhileTheBufferIsFull) {
    fill("AB");
    EXPECT_EQ(take(), "A");
    queue.handleMessageQueue();
    EXPECT_EQ(messages.currentMessage, "A");
    EXPECT_EQ(queued(), "B");
}

TEST_F(MessageQueueTest, LifeAndGhostEndPassWaitingSinglesButNotAPair) {
    fill("ABU");
    EXPECT_EQ(take(), "U");
    EXPECT_EQ(queued(), "AB");
    fill("AUV");
    EXPECT_EQ(take(), "V");
    EXPECT_EQ(queued(), "A");
    fill("`AU");
    EXPECT_EQ(take(), "`A");
    EXPECT_EQ(take(), "U");
    fill("V[UU"); // U stands behind the pair's prefix
    EXPECT_EQ(take(), "V");
    EXPECT_EQ(take(), "[U");
    EXPECT_EQ(queued(), "U");
}

TEST_F(MessageQueueTest, APairIsNeverSplit) {
    fill("]");
    EXPECT_EQ(take(), "");
    EXPECT_EQ(queued(), "]");
    fill("]`A");
    EXPECT_EQ(take(), "]`");
    EXPECT_EQ(take(), "A");
    fill("{\u00E9A"); // not from the add-on, and not cut in the middle either
    EXPECT_EQ(take(), "{\u00E9");
}

TEST_F(MessageQueueTest, AnimationsHoldSinglesBackButNotTheUrgentOnes) {
    for (bool events::EffectState::*playing :
         {&events::EffectState::combatAnimationPlaying, &events::EffectState::deadAnimationPlaying}) {
        effects = {};
        effects.*playing = true;
        fill("AO");
        EXPECT_EQ(take(), "");
        EXPECT_EQ(queued(), "AO");
        for (const std::string urgent : {"O", "R", "E", "e", "w", "x", "y", "z", "`A"}) {
            fill(urgent + "A");
            EXPECT_EQ(take(), urgent);
        }
        fill("AU");
        EXPECT_EQ(take(), "U");
    }
    effects = {};
    effects.shadowAnimationPlaying = true;
    fill("A");
    EXPECT_EQ(take(), "A");
}

TEST_F(MessageQueueTest, BlinkSuppressionIsConsumedHere) {
    effects.combatAnimationPlaying = true;
    fill("cO");
    EXPECT_EQ(take(), "");
    EXPECT_EQ(cooldowns.supressCooldownBlinkCounter, 5);
    EXPECT_EQ(take(), "O");
}

} // namespace
} // namespace glimra::screenlink
