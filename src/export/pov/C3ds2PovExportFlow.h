// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Hears how an export goes on. All calls come on the thread that called the export. The first four
 * operations stand in a fixed order.
 *
 * An exception thrown from Begin, Step or Message cancels the export: nothing is written, Finished is still
 * called, and the exception goes no further. */
class C3ds2PovExportFlow {
  public:
    /** The work has that many steps, at least one. Not called when the export fails before it knows. */
    virtual void Begin(int steps) = 0;
    /** One more step is done. */
    virtual void Step() = 0;
    /** The export has ended, well or not; always called, exactly once and last. */
    virtual void Finished() = 0;
    /** How many triangles the written file shows; called once before the file takes its name. */
    virtual void Message(int value) = 0;
    /** Does what takes long between two of the other calls, returns when it has ended, and throws what the
     * work throws. A window has it done on a second thread and repaints meanwhile. */
    virtual void Work(const std::function<void()>& work) { work(); }

    /** flow may be null. */
    static void Do(C3ds2PovExportFlow* flow, const std::function<void()>& work) {
        if (flow)
            flow->Work(work);
        else
            work();
    }

  protected:
    // The exporter never deletes its flow; a virtual destructor would take the first slot.
    ~C3ds2PovExportFlow() = default;
};
