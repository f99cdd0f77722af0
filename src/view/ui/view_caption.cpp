// SPDX-License-Identifier: MIT
#include "view/ui/view_caption.h"

#include <GL/gl.h>
#include <wx/window.h>

#include <array>
#include <utility>

#include "view/caption_text.h"
#include "view/ui/text_picture.h"
#include "view/ui/view_hint.h"

void CViewCaption::Set(std::wstring text) {
    m_text = CaptionText(text);
    m_width = 0;
}

void CViewCaption::Draw(const wxWindow& window) {
    if (m_text.empty()) return;
    std::array<int, 4> viewport{};
    glGetIntegerv(GL_VIEWPORT, viewport.data());
    const double scale = window.GetContentScaleFactor();
    if (m_width != viewport[2] || m_height != viewport[3] || m_scale != scale) {
        m_width = viewport[2];
        m_height = viewport[3];
        m_scale = scale;
        m_picture = MakeCaptionPicture(window, m_text, m_width, m_height);
    }
    const int above = m_height / 30;  // of the view's lower edge
    DrawOverView(m_picture, (m_width - m_picture.width) / 2, m_height - m_picture.height - above);
}
