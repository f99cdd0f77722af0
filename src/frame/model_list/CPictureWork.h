// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/** Does what a CPictureQueue decides. */
class CPictureWork {
  public:
    CPictureWork() = default;
    CPictureWork(const CPictureWork&) = delete;
    CPictureWork& operator=(const CPictureWork&) = delete;
    virtual ~CPictureWork() = default;

    /** Begins to look for the picture that is kept of a file; CPictureQueue::OnLooked follows later. */
    virtual void Look(const std::wstring& path) = 0;
    /** Begins to draw one; CPictureQueue::OnDrawn follows later. */
    virtual void Draw(const std::wstring& path) = 0;
    /** Ends all drawing; no OnDrawn follows. */
    virtual void StopDrawing() = 0;
    /** The picture is no longer needed in memory. */
    virtual void Drop(const std::wstring& path) = 0;
};
