// SPDX-License-Identifier: MIT
#pragma once

/**
 * Hears how an export goes on. All calls come on the thread that called the export. The four operations stand
 * in a fixed order.
 *
 * An exception thrown from Begin, Step or Message cancels the export: nothing is written, Finished is still
 * called, and the exception goes no further.
 */
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

  protected:
    // The exporter never deletes its flow; a virtual destructor would take the first slot.
    ~C3ds2PovExportFlow() = default;
};
