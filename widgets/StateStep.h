#pragma once

#include <QUndoCommand>

#include <functional>
#include <utility>

/// A step of an undo history between two states that are small enough to be kept whole.
template<typename State>
class StateStep : public QUndoCommand
{
public:
    using Show = std::function<void(const State &)>;

    /// show makes a state the present one; pushing the step calls it with after.
    StateStep(State before, State after, Show show)
        : m_before(std::move(before))
        , m_after(std::move(after))
        , m_show(std::move(show))
    {
    }

    void undo() override { m_show(m_before); }
    void redo() override { m_show(m_after); }

private:
    State m_before;
    State m_after;
    Show m_show;
};
