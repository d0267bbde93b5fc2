#pragma once

#include <QtCore/QElapsedTimer>

namespace sceneeditor
{
//! The steps of a frame, each of them short. Code that draws a slow frame runs several times: each run skips the steps
//! already done, does a few more, and leaves the rest for the next run. So the window can respond in between. The frame
//! must consist of the same steps each time.
class DrawSteps
{
public:
    //! Starts another frame.
    void restart() { m_done = 0; }
    //! Call this before each run, with its limit in milliseconds; negative for none. One step is always done.
    void begin(int limit)
    {
        m_isFirstTime = m_done == 0;
        m_hasDone = false;
        m_limit = limit;
        m_next = 0;
        m_timer.start();
    }
    bool isFirstTime() const { return m_isFirstTime; }
    //! Whether to do the next step now.
    bool next()
    {
        if (m_next++ != m_done || (m_hasDone && m_limit >= 0 && m_timer.elapsed() >= m_limit))
            return false;
        m_hasDone = true;
        ++m_done;
        return true;
    }
    //! Whether all steps so far have been done.
    bool isComplete() const { return m_next == m_done; }

private:
    int m_done = 0; // of this frame
    int m_next = 0;
    bool m_isFirstTime = true;
    bool m_hasDone = false; // since begin()
    int m_limit = -1;
    QElapsedTimer m_timer;
};
} // namespace sceneeditor
