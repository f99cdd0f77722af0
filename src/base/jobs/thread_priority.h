// SPDX-License-Identifier: MIT
#pragma once

/** Lets what people wait for go before this thread, for as long as it runs. Not the lowest priority: beside a machine's other work
 * that would never end. For Linux a thread has a priority of its own; elsewhere the call may fail, and the thread is as any other. */
void LowerPriorityOfThisThread();
