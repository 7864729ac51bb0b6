#include "desktop/windows/log_view.h"
#include "desktop/windows/text_positions.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include <gtest/gtest.h>

#include <ctime>

namespace glimra::desktop {
namespace {

class LogViewTest : public testing::Test {
protected:
    LogViewTest() {
        m_view.resize(400, 200);
        m_view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_view));
    }
    void log(std::string_view text) { m_text.insertAtSelection(text); }
    void logLines(int count) {
        for (int i = 0; i < count; ++i)
            log("line " + std::to_string(i) + "\n");
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, int times = 1) {
        for (int i = 0; i < times; ++i)
            QTest::keyClick(&m_view, key, modifiers);
    }
    bool isScrolledToEnd() const {
        return m_view.verticalScrollBar()->value() == m_view.verticalScrollBar()->maximum();
    }
    std::string shown() const { return m_view.toPlainText().toStdString(); }

    platform::TextView m_text;
    LogView m_view{m_text};
};

TEST_F(LogViewTest, LinesGatherAtTheEndAndTheViewScrollsAlong) {
    logLines(100);
    EXPECT_EQ(shown(), m_text.text);
    EXPECT_GT(m_view.verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(isScrolledToEnd());
    m_view.resize(400, 150);
    EXPECT_TRUE(isScrolledToEnd());
    m_view.verticalScrollBar()->setValue(3);
    log("read on in peace\n");
    EXPECT_EQ(m_view.verticalScrollBar()->value(), 3);
    EXPECT_TRUE(shown().ends_with("read on in peace\n"));
}

TEST_F(LogViewTest, TheNextLineReplacesWhatTheUserHasSelected) {
    // Characters of one to four bytes, and of one or two units in the view.
    log("aä€\U0001F511z\nsecond\n");
    press(Qt::Key_Home, Qt::ControlModifier);
    press(Qt::Key_Right, {}, 2);
    press(Qt::Key_Right, Qt::ShiftModifier, 2);
    log("[ü]");
    EXPECT_EQ(m_text.text, "aä[ü]z\nsecond\n");
    // The insertion point is behind it: so are the next lines.
    log("+");
    EXPECT_EQ(shown(), "aä[ü]+z\nsecond\n");
    press(Qt::Key_A, Qt::ControlModifier);
    log("all\n");
    log("end\n");
    EXPECT_EQ(shown(), "all\nend\n");
    EXPECT_EQ(m_text.text, shown());
}

TEST_F(LogViewTest, WhateverIsLoggedPositionsStayRight) {
    using namespace std::string_literals;
    // What a view drops, joins or turns into something else.
    const std::string odd = "\r\n\0\x01\x7F|\u2028\u2029\uFDD0\uFEFF|\xFF\xC3|\xF0\x9F|\x80|\xED\xA0\x80|"s;
    log(odd + "\uFEFFb\n" + odd);
    EXPECT_EQ(unitsIn(m_text.text), static_cast<std::size_t>(m_view.document()->characterCount()) - 1);
    press(Qt::Key_Home, Qt::ControlModifier);
    log("start|");
    press(Qt::Key_End, Qt::ControlModifier);
    press(Qt::Key_Left, Qt::ShiftModifier);
    log("#end");
    EXPECT_TRUE(m_text.text.starts_with("start|\r\n"));
    EXPECT_TRUE(m_text.text.ends_with("#end"));
    EXPECT_TRUE(shown().ends_with("#end"));
    // A character cut in two still counts as it does whole.
    const std::string key = "\U0001F511";
    for (std::size_t cut = 0; cut <= key.size(); ++cut)
        EXPECT_EQ(viewText(key.substr(0, cut)).size() + viewText(key.substr(cut)).size(), 2) << cut;
}

TEST_F(LogViewTest, BeginsWithWhatMattersAndIsCopiedWithTheRest) {
    log("Glimra version 1\nKeyboard driver: usb\n\nCalibration settings not found!\n");
    const auto firstShown = [this] {
        QTextBlock block = m_view.document()->firstBlock();
        while (!block.isVisible())
            block = block.next();
        return block.text().toStdString();
    };
    const auto copied = [this] {
        m_view.copyAll();
        return QGuiApplication::clipboard()->text().toStdString();
    };
    EXPECT_EQ(firstShown(), "Calibration settings not found!");
    EXPECT_EQ(copied(), m_text.text);
    m_view.clearView();
    log("new\n");
    EXPECT_EQ(firstShown(), "new");
    EXPECT_EQ(copied(), "new\n");
    EXPECT_EQ(shown(), m_text.text) << "nothing is lost";
}

TEST_F(LogViewTest, StaysQuickWithManyLines) {
    std::string lines;
    for (int i = 0; i < 100000; ++i)
        lines += "A line of the log that is as long as most lines are, number " + std::to_string(i) + "\n";
    log(lines);
    const std::clock_t begin = std::clock();
    logLines(1000);
    EXPECT_TRUE(isScrolledToEnd());
    press(Qt::Key_Up, {}, 10);
    logLines(10);
    press(Qt::Key_Left, Qt::ShiftModifier, 10);
    // Of the processor's time; far from what is needed, and farther from what a new layout of it all would
    // take.
    EXPECT_LT(std::clock() - begin, 5 * CLOCKS_PER_SEC);
}

} // namespace
} // namespace glimra::desktop
