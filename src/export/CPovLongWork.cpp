// SPDX-License-Identifier: MIT
#include "export/CPovLongWork.h"

#include <utility>

namespace {
thread_local CPovLongWork* s_inForce = nullptr;
}

CPovLongWork::CPovLongWork(CRunner runner)
    : m_runner(std::move(runner)), m_before(std::exchange(s_inForce, this)) {}

CPovLongWork::~CPovLongWork() {
    s_inForce = m_before;
}

void CPovLongWork::Run(const CWork& work) {
    if (s_inForce)
        s_inForce->m_runner(work);
    else
        work();
}
