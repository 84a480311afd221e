#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/linux/capture/TextUndo.h"

namespace navora {
namespace {

class TextUndoTest : public testing::Test {
 protected:
  void type(const std::string& text) {
    for (const char character : text)
      insert(std::string(1, character));
  }
  // In one user action, as pasting does.
  void insert(const std::string& text) {
    buffer_->begin_user_action();
    buffer_->insert_at_cursor(text);
    buffer_->end_user_action();
  }
  void replaceAll(const std::string& text) {
    buffer_->select_range(buffer_->begin(), buffer_->end());
    buffer_->begin_user_action();
    buffer_->erase_selection();
    buffer_->insert_at_cursor(text);
    buffer_->end_user_action();
  }
  // Expect these texts after as many steps.
  void expectUndo(const std::vector<std::string>& texts) {
    for (const std::string& expected : texts) {
      undo_.undo();
      EXPECT_EQ(text(), expected);
    }
  }
  void expectRedo(const std::vector<std::string>& texts) {
    for (const std::string& expected : texts) {
      undo_.redo();
      EXPECT_EQ(text(), expected);
    }
  }
  std::string text() const { return buffer_->get_text(); }
  int caret() const { return buffer_->get_insert()->get_iter().get_offset(); }

  Glib::RefPtr<Gtk::TextBuffer> buffer_ = Gtk::TextBuffer::create();
  TextUndo undo_{buffer_};
};

TEST_F(TextUndoTest, HasNoStepsForTextThatWasThereBefore) {
  buffer_->set_text("one");
  TextUndo undo(buffer_);
  undo.undo();
  EXPECT_EQ(text(), "one");
  undo.redo();
  EXPECT_EQ(text(), "one");
}

TEST_F(TextUndoTest, UndoesTypingByWordsAndLines) {
  type("one two\nthree");
  expectUndo({"one two\n", "one two", "one ", "", ""});
}

TEST_F(TextUndoTest, RedoesInReverseOrder) {
  type("one two");
  undo_.undo();
  undo_.undo();
  expectRedo({"one ", "one two", "one two"});
}

TEST_F(TextUndoTest, UndoesAReplacementInOneStep) {
  type("one");
  replaceAll("two");
  undo_.undo();
  EXPECT_EQ(text(), "one");
  undo_.redo();
  EXPECT_EQ(text(), "two");
}

TEST_F(TextUndoTest, UndoesTypingOverASelectionInOneStep) {
  type("one");
  replaceAll("t");
  type("wo");
  undo_.undo();
  EXPECT_EQ(text(), "one");
  undo_.redo();
  EXPECT_EQ(text(), "two");
}

TEST_F(TextUndoTest, UndoesDeletingByWordsInBothDirections) {
  const auto erase = [&](int offset) {
    buffer_->begin_user_action();
    buffer_->erase(buffer_->get_iter_at_offset(offset), buffer_->get_iter_at_offset(offset + 1));
    buffer_->end_user_action();
  };
  buffer_->set_text("one two");
  for (const int offset : {6, 5, 4, 3, 2})
    erase(offset);
  ASSERT_EQ(text(), "on");
  expectUndo({"one ", "one two"});
  for (int count = 0; count < 5; ++count)
    erase(0);
  ASSERT_EQ(text(), "wo");
  expectUndo({"two", "one two"});
}

TEST_F(TextUndoTest, DoesNotMergeTypingIntoAPaste) {
  insert("pasted");
  type("s");
  expectUndo({"pasted", ""});
}

TEST_F(TextUndoTest, UndoIsOneUserActionOfTheBuffer) {
  type("one");
  replaceAll("two");
  int actions = 0;
  buffer_->signal_end_user_action().connect([&] { ++actions; });
  undo_.undo();
  EXPECT_EQ(actions, 1);
}

TEST_F(TextUndoTest, MovesTheCaretToTheChange) {
  type("one three");
  buffer_->begin_user_action();
  buffer_->insert(buffer_->get_iter_at_offset(4), "two ");
  buffer_->end_user_action();
  buffer_->place_cursor(buffer_->begin());
  undo_.undo();
  EXPECT_EQ(text(), "one three");
  EXPECT_EQ(caret(), 4);
  undo_.redo();
  EXPECT_EQ(text(), "one two three");
  EXPECT_EQ(caret(), 8);
}

TEST_F(TextUndoTest, CountsCharactersNotBytes) {
  insert("日本");
  insert("\U0001F642 語");
  undo_.undo();
  EXPECT_EQ(text(), "日本");
  undo_.redo();
  EXPECT_EQ(text(), "日本\U0001F642 語");
}

TEST_F(TextUndoTest, AChangeDiscardsTheUndoneSteps) {
  type("one");
  undo_.undo();
  type("two");
  undo_.redo();
  EXPECT_EQ(text(), "two");
}

TEST_F(TextUndoTest, ForgetDiscardsAllSteps) {
  type("one");
  undo_.undo();
  type("two");
  undo_.forget();
  undo_.undo();
  EXPECT_EQ(text(), "two");
  undo_.redo();
  EXPECT_EQ(text(), "two");
}

}  // namespace
}  // namespace navora
