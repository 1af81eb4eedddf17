// Counts the OpenGL draw calls of every frame of a process, for the city's frame bench.
// Preloaded: it hands out counting wrappers in place of the draw functions the process asks
// the GLX library for, and reports the draws per swapped frame when the process ends.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

typedef void (*Function)(void);
typedef Function (*Resolver)(const unsigned char*);

static unsigned long drawsThisFrame;
static unsigned long frames;
static unsigned long totalDraws;
static unsigned long mostDraws;

static void (*realDrawArrays)(unsigned, int, int);
static void (*realDrawElements)(unsigned, int, unsigned, const void*);
static void (*realDrawArraysInstanced)(unsigned, int, int, int);
static void (*realDrawElementsInstanced)(unsigned, int, unsigned, const void*, int);

static void countedDrawArrays(unsigned mode, int first, int count)
{
    ++drawsThisFrame;
    realDrawArrays(mode, first, count);
}
static void countedDrawElements(unsigned mode, int count, unsigned type, const void* indices)
{
    ++drawsThisFrame;
    realDrawElements(mode, count, type, indices);
}
static void countedDrawArraysInstanced(unsigned mode, int first, int count, int instances)
{
    ++drawsThisFrame;
    realDrawArraysInstanced(mode, first, count, instances);
}
static void countedDrawElementsInstanced(unsigned mode, int count, unsigned type, const void* indices, int instances)
{
    ++drawsThisFrame;
    realDrawElementsInstanced(mode, count, type, indices, instances);
}

static Function wrap(const char* name, Function real)
{
    if (!real)
        return real;
    if (strcmp(name, "glDrawArrays") == 0) {
        realDrawArrays = (void (*)(unsigned, int, int))real;
        return (Function)countedDrawArrays;
    }
    if (strcmp(name, "glDrawElements") == 0) {
        realDrawElements = (void (*)(unsigned, int, unsigned, const void*))real;
        return (Function)countedDrawElements;
    }
    if (strcmp(name, "glDrawArraysInstanced") == 0) {
        realDrawArraysInstanced = (void (*)(unsigned, int, int, int))real;
        return (Function)countedDrawArraysInstanced;
    }
    if (strcmp(name, "glDrawElementsInstanced") == 0) {
        realDrawElementsInstanced = (void (*)(unsigned, int, unsigned, const void*, int))real;
        return (Function)countedDrawElementsInstanced;
    }
    return real;
}

Function glXGetProcAddressARB(const unsigned char* name)
{
    static Resolver real;
    if (!real)
        real = (Resolver)dlsym(RTLD_NEXT, "glXGetProcAddressARB");
    return wrap((const char*)name, real(name));
}

Function glXGetProcAddress(const unsigned char* name)
{
    static Resolver real;
    if (!real)
        real = (Resolver)dlsym(RTLD_NEXT, "glXGetProcAddress");
    return wrap((const char*)name, real(name));
}

void glXSwapBuffers(void* display, unsigned long drawable)
{
    static void (*real)(void*, unsigned long);
    if (!real)
        real = (void (*)(void*, unsigned long))dlsym(RTLD_NEXT, "glXSwapBuffers");
    if (drawsThisFrame) {
        ++frames;
        totalDraws += drawsThisFrame;
        if (drawsThisFrame > mostDraws)
            mostDraws = drawsThisFrame;
    }
    drawsThisFrame = 0;
    real(display, drawable);
}

__attribute__((destructor)) static void report(void)
{
    if (frames)
        fprintf(stderr, "DRAWS frames=%lu mean=%.1f most=%lu\n", frames, (double)totalDraws / frames, mostDraws);
}
