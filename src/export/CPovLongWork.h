// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/**
 * How an export does what takes long between two calls of its flow: on its own thread, unless another way is
 * in force. A window puts one in force that does the work on a second thread and repaints meanwhile; the flow
 * is still called on the thread of the export. In force on the thread that made it, as long as it lives.
 */
class CPovLongWork {
  public:
    using CWork = std::function<void()>;
    /** Does the work and returns when it has ended; throws what the work throws. */
    using CRunner = std::function<void(const CWork&)>;

    explicit CPovLongWork(CRunner runner);
    CPovLongWork(const CPovLongWork&) = delete;
    CPovLongWork& operator=(const CPovLongWork&) = delete;
    ~CPovLongWork();

    static void Run(const CWork& work);

  private:
    CRunner m_runner;
    CPovLongWork* m_before;
};
