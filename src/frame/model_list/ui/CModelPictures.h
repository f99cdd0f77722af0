// SPDX-License-Identifier: MIT
#pragma once

#include <wx/bitmap.h>
#include <wx/event.h>

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "frame/model_list/CPictureQueue.h"
#include "frame/model_list/CPictureWork.h"
#include "frame/model_list/CThumbnailLoader.h"
#include "frame/model_list/ui/CPictureBatch.h"

/** The pictures of the model list, taken from the cache that all programs share, or drawn and put there. */
class CModelPictures final : private CPictureWork {
  public:
    /** side: of a picture in device-independent pixels, of which each has `scale` pixels of the display. changed:
     * called when a picture, or the reason why there is none, has come. */
    CModelPictures(int side, double scale, std::function<void()> changed);
    ~CModelPictures() override;

    void SetFiles(const std::vector<std::wstring>& paths) { m_queue.SetFiles(paths); }
    void SetVisible(CStripLayout::CRange visible) { m_queue.SetVisible(visible); }
    void SetPaused(bool paused) { m_queue.SetPaused(paused); }
    void Forget(const std::wstring& path) { m_queue.Forget(path); }
    [[nodiscard]] bool IsDone() const { return m_queue.IsDone(); }

    /** Null while there is none. */
    [[nodiscard]] const wxBitmap* BitmapOf(const std::wstring& path) const;
    /** Why there is no picture, translated; empty unless that is known. */
    [[nodiscard]] std::wstring ProblemOf(const std::wstring& path) const;

  private:
    void Look(const std::wstring& path) override { m_loader->Look(path); }
    void Draw(const std::wstring& path) override { m_batch.Draw(path); }
    void StopDrawing() override { m_batch.Stop(); }
    void Drop(const std::wstring& path) override { m_bitmaps.erase(path); }
    void OnDrawn(const CPictureBatch::CDrawn& drawn);
    void TakeNews();
    void Take(CThumbnailNews& news);

    double m_scale;
    std::function<void()> m_changed;
    std::unordered_map<std::wstring, wxBitmap> m_bitmaps;
    std::unordered_map<std::wstring, std::string> m_problems;
    CPictureQueue m_queue;
    CPictureBatch m_batch;
    wxEvtHandler m_handler;                      ///< takes the loader's news to this thread
    std::unique_ptr<CThumbnailLoader> m_loader;  ///< last: its thread uses the handler
};
