/* The floor for a measuring walk: the least work that lists every folder and stats every file.
 * THREADS threads (2 by default) list folders with getdents64 and stat regular files with
 * fstatat; a thread that meets a folder while another is idle hands it over, otherwise it goes
 * down itself. Prints the regular files and their allocated bytes (hard links counted each
 * time). Usage: floor_walk [-t THREADS] ROOT... */
#define _GNU_SOURCE
#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

struct totals {
    uint64_t files;
    uint64_t bytes;
};

static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t changed = PTHREAD_COND_INITIALIZER;
static char **queue;
static size_t queued, capacity;
static int idle, threads;

static int push(const char *path, size_t length, const char *name)
{
    int taken = 0;
    pthread_mutex_lock(&lock);
    if (queued < (size_t)idle) {
        if (queued == capacity) {
            capacity = capacity ? 2 * capacity : 64;
            queue = realloc(queue, capacity * sizeof *queue);
        }
        char *full = malloc(length + strlen(name) + 2);
        sprintf(full, "%.*s/%s", (int)length, path, name);
        queue[queued] = full;
        __atomic_store_n(&queued, queued + 1, __ATOMIC_RELAXED);
        pthread_cond_signal(&changed);
        taken = 1;
    }
    pthread_mutex_unlock(&lock);
    return taken;
}

static void walk(int fd, char *path, size_t length, struct totals *sum)
{
    size_t size = 0, room = 32768;
    char *listing = malloc(room);
    for (;;) {
        if (room - size < 32768)
            listing = realloc(listing, room *= 2);
        long count = syscall(SYS_getdents64, fd, listing + size, room - size);
        if (count <= 0)
            break;
        size += (size_t)count;
    }
    for (size_t at = 0; at < size;) {
        struct dirent64 *entry = (struct dirent64 *)(listing + at);
        at += entry->d_reclen;
        const char *name = entry->d_name;
        if (name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0)))
            continue;
        unsigned char type = entry->d_type;
        struct stat info;
        if (type == DT_REG || type == DT_UNKNOWN) {
            if (fstatat(fd, name, &info, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            if (S_ISREG(info.st_mode)) {
                sum->files++;
                sum->bytes += (uint64_t)info.st_blocks * 512;
                continue;
            }
            if (!S_ISDIR(info.st_mode))
                continue;
            type = DT_DIR;
        }
        if (type != DT_DIR)
            continue;
        /* Unlocked looks, so that a walker pays for the lock only when a hand-over is likely. */
        if (__atomic_load_n(&idle, __ATOMIC_RELAXED) > (int)__atomic_load_n(&queued, __ATOMIC_RELAXED) &&
            push(path, length, name))
            continue;
        int child = openat(fd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (child < 0)
            continue;
        size_t nameLength = strlen(name);
        char *childPath = malloc(length + nameLength + 2);
        memcpy(childPath, path, length);
        childPath[length] = '/';
        memcpy(childPath + length + 1, name, nameLength + 1);
        walk(child, childPath, length + 1 + nameLength, sum);
        free(childPath);
    }
    free(listing);
    close(fd);
}

static void *serve(void *argument)
{
    struct totals *sum = argument;
    pthread_mutex_lock(&lock);
    for (;;) {
        if (queued > 0) {
            char *path = queue[queued - 1];
            __atomic_store_n(&queued, queued - 1, __ATOMIC_RELAXED);
            __atomic_store_n(&idle, idle - 1, __ATOMIC_RELAXED);
            pthread_mutex_unlock(&lock);
            int fd = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (fd >= 0)
                walk(fd, path, strlen(path), sum);
            free(path);
            pthread_mutex_lock(&lock);
            __atomic_store_n(&idle, idle + 1, __ATOMIC_RELAXED);
            continue;
        }
        if (idle == threads) {
            pthread_cond_broadcast(&changed);
            break;
        }
        pthread_cond_wait(&changed, &lock);
    }
    pthread_mutex_unlock(&lock);
    return NULL;
}

int main(int argc, char **argv)
{
    threads = 2;
    int first = 1;
    if (argc > 2 && strcmp(argv[1], "-t") == 0) {
        threads = atoi(argv[2]);
        first = 3;
    }
    if (threads < 1 || first >= argc) {
        fprintf(stderr, "usage: floor_walk [-t THREADS] ROOT...\n");
        return 2;
    }
    for (int i = first; i < argc; i++) {
        queue = realloc(queue, (queued + 1) * sizeof *queue);
        queue[queued++] = strdup(argv[i]);
    }
    capacity = queued;
    idle = threads;
    pthread_t *helpers = calloc((size_t)threads, sizeof *helpers);
    struct totals *sums = calloc((size_t)threads, sizeof *sums);
    for (int i = 1; i < threads; i++)
        pthread_create(&helpers[i], NULL, serve, &sums[i]);
    serve(&sums[0]);
    struct totals all = {0, 0};
    for (int i = 0; i < threads; i++) {
        if (i > 0)
            pthread_join(helpers[i], NULL);
        all.files += sums[i].files;
        all.bytes += sums[i].bytes;
    }
    printf("%llu files, %llu bytes\n", (unsigned long long)all.files, (unsigned long long)all.bytes);
    return 0;
}
