#pragma once
// Helpers for the widget tests: finding controls by their names and answering the modal
// dialog that the next call opens.
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

namespace kova::test {

// The named child of a window; fails the test when it is missing.
template <typename T>
T* child(QWidget* window, const char* name) {
    T* w = window->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(w, nullptr) << "no control " << name;
    return w;
}

// Runs `answer` on the modal dialog that `open` brings up, once the dialog is showing.
inline void AnswerModal(const std::function<void(QWidget*)>& answer,
                        const std::function<void()>& open) {
    struct State {
        bool waiting = true;
        bool answered = false;
        std::function<void(QWidget*)> answer;
    };
    auto state = std::make_shared<State>();
    state->answer = answer;
    auto poll = std::make_shared<std::function<void()>>();
    *poll = [state, weak = std::weak_ptr<std::function<void()>>(poll)] {
        if (!state->waiting) return;
        QWidget* modal = QApplication::activeModalWidget();
        if (modal && modal->isVisible()) {
            state->waiting = false;
            state->answered = true;
            QPointer<QWidget> guard(modal);
            state->answer(modal);
            // An answer that failed part-way must not leave the test waiting on the dialog.
            if (guard && guard->isVisible()) {
                ADD_FAILURE() << "the dialog was left open";
                if (auto* dialog = qobject_cast<QDialog*>(guard.data())) dialog->reject();
            }
        } else if (auto again = weak.lock()) {
            QTimer::singleShot(10, [again] { (*again)(); });
        }
    };
    QTimer::singleShot(0, [poll] { (*poll)(); });
    open();
    state->waiting = false;
    EXPECT_TRUE(state->answered) << "no modal dialog was shown";
}

}  // namespace kova::test
