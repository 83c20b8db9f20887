#pragma once
// Helpers for the widget tests: finding controls by their names and answering the modal
// dialog that the next call opens.
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QString>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include <ostream>

// gtest shows a QString that differs as its text.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}

namespace kova::test {

// The named child of a window; fails the test when it is missing.
template <typename T>
T* child(QWidget* window, const char* name) {
    T* w = window->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(w, nullptr) << "no control " << name;
    return w;
}

// The widgets that Tab visits from the first one of a window, in order: visible, enabled,
// and taking the focus by Tab (a scroll area's viewport and other helpers are skipped, and
// so is the line edit inside an editable combo box, whose focus goes to the box).
inline std::vector<QWidget*> TabChain(QWidget* window, QWidget* first) {
    std::vector<QWidget*> chain;
    QWidget* w = first;
    do {
        if ((w->focusPolicy() & Qt::TabFocus) && w->isVisibleTo(window) && w->isEnabled() &&
            w != window && !w->focusProxy())
            chain.push_back(w);
        w = w->nextInFocusChain();
    } while (w != first && chain.size() < 200);
    return chain;
}

// Shows a window and makes it the active one, so that its "&" mnemonics work.
inline bool ShowActive(QWidget* window) {
    window->show();
    QApplication::setActiveWindow(window);
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

// Alt + key as the window system delivers it, so that a button's "&" mnemonic answers. A
// mnemonic presses the button at once and releases (clicks) it 100 ms later.
inline void AltKey(QWidget* window, Qt::Key key) {
    QTest::keyClick(window->windowHandle(), key, Qt::AltModifier);
    QTest::qWait(200);
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
