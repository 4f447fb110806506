// SPDX-License-Identifier: MIT
// To be preloaded into KWin 6, which draws by OpenGL only where it finds a graphics device. This
// one is without hardware: its buffers are textures of Mesa's software renderer. The functions are
// libdrm's and libgbm's, as far as KWin calls them.
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string_view>
#include <sys/mman.h>

#define REPLACES extern "C" __attribute__((visibility("default"), used))

namespace
{

/** libdrm's. */
struct Device {
    char **nodes;
    int availableNodes;
    int busType;
    void *bus;
    void *details;
};

/** libgbm's type of this name is opaque. */
struct Buffer {
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t format;
};

Device device; // also stands for libgbm's

EGLint valueOf(EGLint key, const EGLint *attributes)
{
    while (*attributes != EGL_NONE && *attributes != key) {
        attributes += 2;
    }
    return *attributes == EGL_NONE ? 0 : attributes[1];
}

template<typename Function>
Function real(const char *name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

EGLImageKHR createImage(EGLDisplay display, EGLContext context, EGLenum target,
                        EGLClientBuffer source, const EGLint *attributes)
{
    const auto create = real<PFNEGLCREATEIMAGEKHRPROC>("eglCreateImageKHR");
    if (target != EGL_LINUX_DMA_BUF_EXT) {
        return create(display, context, target, source, attributes);
    }
    GLint before = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &before);
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAX_LEVEL, 0);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, valueOf(EGL_WIDTH, attributes),
                 valueOf(EGL_HEIGHT, attributes), 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    auto *const pixels = reinterpret_cast<EGLClientBuffer>(std::uintptr_t{texture});
    auto *const image
        = create(display, eglGetCurrentContext(), EGL_GL_TEXTURE_2D_KHR, pixels, nullptr);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(before));
    glDeleteTextures(1, &texture); // the image keeps the pixels
    return image;
}

EGLDisplay platformDisplay(EGLenum platform, void *native, const EGLint *attributes)
{
    return native == &device
        ? eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr)
        : real<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT")(platform, native,
                                                                            attributes);
}

__eglMustCastToProperFunctionPointerType functionNamed(const char *name)
{
    return std::string_view(name) == "eglCreateImageKHR"
        ? reinterpret_cast<__eglMustCastToProperFunctionPointerType>(createImage)
        : eglGetProcAddress(name);
}

/** KWin calls EGL through libepoxy, which has a variable for each function. */
__attribute__((constructor)) void replaceFunctions()
{
    unsetenv("LD_PRELOAD"); // KWin's children are to be as usual
    static char node[] = "/dev/null"; // something that can be opened
    static char *nodes[] = {node, node, node};
    constexpr int renderNode = 2;
    device = {.nodes = nodes,
              .availableNodes = 1 << renderNode,
              .busType = 0,
              .bus = nullptr,
              .details = nullptr};
    const auto replace = [](const char *name, auto function) {
        if (void *const variable = dlsym(RTLD_DEFAULT, name)) {
            *static_cast<decltype(function) *>(variable) = function;
        }
    };
    replace("epoxy_eglGetProcAddress", functionNamed);
    replace("epoxy_eglGetPlatformDisplayEXT", platformDisplay);
}

/** Mesa, which looks for devices, too, is to find none. */
bool isKWin(const void *caller)
{
    Dl_info info{};
    return dladdr(caller, &info) != 0
        && std::string_view(info.dli_fname).find("libkwin") != std::string_view::npos;
}

} // namespace

REPLACES int drmGetDevices2(std::uint32_t, Device **devices, int most)
{
    if (!isKWin(__builtin_return_address(0))) {
        return 0;
    }
    if (devices != nullptr && most > 0) {
        devices[0] = &device;
    }
    return 1;
}
REPLACES void drmFreeDevices(Device **, int) { }
REPLACES int drmGetDeviceFromDevId(std::uint64_t, std::uint32_t, Device **)
{
    return -ENODEV; // clients are to use memory
}

REPLACES void *gbm_create_device(int)
{
    return &device;
}
REPLACES void gbm_device_destroy(void *) { }
REPLACES int gbm_device_get_fd(void *)
{
    return -1;
}

REPLACES Buffer *gbm_bo_create(void *, std::uint32_t width, std::uint32_t height,
                               std::uint32_t format, std::uint32_t)
{
    constexpr std::uint32_t screens = 0x34325258; // "XR24"; viewers are to get memory
    return format == screens ? new Buffer{.width = width, .height = height, .format = format}
                             : nullptr;
}
REPLACES Buffer *gbm_bo_create_with_modifiers(void *, std::uint32_t, std::uint32_t, std::uint32_t,
                                              const std::uint64_t *, unsigned)
{
    return nullptr;
}
REPLACES void gbm_bo_destroy(Buffer *buffer)
{
    delete buffer;
}
REPLACES std::uint32_t gbm_bo_get_width(Buffer *buffer)
{
    return buffer->width;
}
REPLACES std::uint32_t gbm_bo_get_height(Buffer *buffer)
{
    return buffer->height;
}
REPLACES std::uint32_t gbm_bo_get_format(Buffer *buffer)
{
    return buffer->format;
}
REPLACES std::uint64_t gbm_bo_get_modifier(Buffer *)
{
    return (std::uint64_t{1} << 56U) - 1; // DRM_FORMAT_MOD_INVALID: none
}
REPLACES int gbm_bo_get_plane_count(Buffer *)
{
    return 1;
}
REPLACES int gbm_bo_get_fd_for_plane(Buffer *, int)
{
    return memfd_create("", MFD_CLOEXEC);
}
REPLACES std::uint32_t gbm_bo_get_offset(Buffer *, int)
{
    return 0;
}
REPLACES std::uint32_t gbm_bo_get_stride_for_plane(Buffer *buffer, int)
{
    return 4 * buffer->width; // bytes
}
