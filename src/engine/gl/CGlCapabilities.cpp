// SPDX-License-Identifier: MIT
#include "engine/gl/CGlCapabilities.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include "engine/gl/gl_api.h"

namespace {

std::string_view Text(GLenum name) {
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

/** "2.1 Mesa ..." gives 21; anything else 10. */
int ParseVersion(std::string_view text) {
    if (text.size() < 3 || text[1] != '.' || text[0] < '1' || text[0] > '9' || text[2] < '0' ||
        text[2] > '9') {
        return 10;
    }
    return (text[0] - '0') * 10 + (text[2] - '0');
}

bool HasExtension(std::string_view list, std::string_view name) {
    for (std::size_t at = list.find(name); at != std::string_view::npos; at = list.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if ((at == 0 || list[at - 1] == ' ') && (end == list.size() || list[end] == ' ')) return true;
    }
    return false;
}

}  // namespace

CGlCapabilities CGlCapabilities::Query(CGlCurrent&) {
    CGlCapabilities result;
    result.version = ParseVersion(Text(GL_VERSION));
    const std::string_view extensions = Text(GL_EXTENSIONS);
    const std::string_view glsl = result.version >= 20 ? Text(GL_SHADING_LANGUAGE_VERSION) : "";
    result.shaders = result.version >= 21 && glsl >= "1.20";
    result.framebuffers = result.version >= 30 || HasExtension(extensions, "GL_ARB_framebuffer_object");
    result.fences = result.version >= 32 || HasExtension(extensions, "GL_ARB_sync");
    result.generateMipmap = result.framebuffers;
    result.anyTextureSize =
        result.version >= 20 || HasExtension(extensions, "GL_ARB_texture_non_power_of_two");
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &result.maxTextureSize);
    if (result.version >= 46 || HasExtension(extensions, "GL_EXT_texture_filter_anisotropic") ||
        HasExtension(extensions, "GL_ARB_texture_filter_anisotropic")) {
        glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &result.maxAnisotropy);
    }
    const std::string_view renderer = Text(GL_RENDERER);
    result.software = renderer.find("llvmpipe") != std::string_view::npos ||
                      renderer.find("softpipe") != std::string_view::npos ||
                      renderer.find("Software") != std::string_view::npos;
    result.memoryInPlace = result.software && HasExtension(extensions, "GL_AMD_pinned_memory");
    return result;
}
