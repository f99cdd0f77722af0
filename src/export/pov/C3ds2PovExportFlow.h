// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/** Is told about the progress of an export, on the thread that called the export. The order of the first four
 * operations is fixed.
 *
 * An exception thrown from Begin, Step or Message cancels the export: nothing is written, Finished is still
 * called, and the exception goes no further. */
class C3ds2PovExportFlow {
  public:
    /** The number of steps, at least 1, is known. Not called when the export fails before that. */
    virtual void Begin(int steps) = 0;
    /** One more step is done. */
    virtual void Step() = 0;
    /** The export has ended, with success or failure. Always called, exactly once and last. */
    virtual void Finished() = 0;
    /** How many triangles the written file shows; called once before the file takes its name. */
    virtual void Message(int value) = 0;
    /** Runs the long work between two of the other calls, returns when it has ended, and rethrows its
     * exceptions. A window can run it on a second thread and repaint meanwhile. */
    virtual void Work(const std::function<void()>& work) { work(); }

    /** Runs work through flow, or directly if flow is null. */
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
