#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class QWidget;

/// Files may lie on a share that no longer answers. What touches them runs beside the
/// window's thread: the window waits as for a plain call; after 0.3 s everything but the
/// user's input goes on, and after a second it shows what it waits for, with a Cancel button.
///
/// `work` must own all that it uses, since after a Cancel it goes on alone until the share
/// answers, which may be never. Meanwhile nothing else is begun at the same place (`where`,
/// a folder): that is answered with false at once. What `work` throws is thrown here.
/// false: cancelled, or not begun.
bool RunBeside(QWidget* parent, const QString& where, const QString& waitingFor,
               std::function<void()> work);

/// The same for what has an answer. Nothing: cancelled, or not begun.
template <typename ANSWER>
std::optional<ANSWER> AskBeside(QWidget* parent, const QString& where, const QString& waitingFor,
                                std::function<ANSWER()> work) {
    auto answer = std::make_shared<std::optional<ANSWER>>();
    if (!RunBeside(parent, where, waitingFor,
                   [answer, work = std::move(work)] { *answer = work(); }))
        return std::nullopt;
    return std::move(*answer);
}
