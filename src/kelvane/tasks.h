/* SPDX-License-Identifier: MIT */
/**
 * @file tasks.h
 * Tasks: applications that run side by side, and what they send each other.
 *
 * A task is a process with a number from 1. It may have subtasks, such as its open books, with
 * numbers from 0. One task is active: its framebuffer is what the screen shows, and keys and
 * touches go there. docs/tasks.md tells how to run several applications on a workstation; without
 * that, MultitaskingSupported() is 0 and each call does nothing but give the answer in brackets.
 *
 * Events, messages and requests from another task arrive in a step of the loop that runs timers
 * too: ProcessEventLoopQuick() hands none of them on. All calls belong to the thread of the loop.
 * Null texts count as empty, and numbers that a call hands out through a null pointer are left out.
 *
 * A process that was not started as a task becomes one when it opens the screen. Until then it can
 * look at other tasks and send to them, but has no number, no subtasks and no listeners.
 */
#ifndef KELVANE_TASKS_H
#define KELVANE_TASKS_H

#include "api.h"
#include "bitmaps.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

/** Flags of a task. Others are the application's own. */
enum {
    TASK_COPIES_SCREEN = 2,  /**< starts with the picture and orientation of the active task */
    TASK_UPDATES_ITSELF = 4, /**< shows its picture itself when it comes to the foreground */
    TASK_FIXED_ORIENTATION = 0x10025 /**< all of these bits: starts in the orientation that is set,
                                          whatever the sensor says. TASK_UPDATES_ITSELF is one of
                                          them, so that such a task shows its picture itself */
};

/** Bit of the flags of SetRequestListener(): the listener goes. */
enum { LISTENER_REMOVE = 4 };

/** A part of a task that can be shown by itself. */
typedef struct isubtaskinfo_s {
    int subtask;
    const char *name;
    const char *book; /**< path of the open book, or empty */
} isubtaskinfo;

/** What is known about a task. */
typedef struct itaskinfo_s {
    int task;
    int pid;
    unsigned flags;
    const char *appname; /**< path or name of the application */
    const char *name;    /**< for people */
    const char *book;    /**< path of the open book, or empty */
    const char *title;
    const ibitmap *icon; /**< null for none */
    int subtask;         /**< the one that is shown when the task is active */
    int nsubtasks;
    const isubtaskinfo *subtasks;
} itaskinfo;

/**
 * Answers a request, or takes a message, of another task.
 * @param data the library's; of a request it holds max(size, outsize) bytes, and what stands there
 *             afterwards is the answer
 * @param size bytes that were sent
 * @param sender its task
 * @return the answer that the sender's call returns; of a message it does not matter
 */
typedef int (*kv_requestlistener)(int request, void *data, int size, int sender);
/** Takes the messages of other tasks. */
typedef kv_requestlistener kv_messagehandler;

/** 1 when several applications can run side by side. */
KELVANE_API int MultitaskingSupported(void);

/** @name Starting
 * @{ */
/** NewTaskEx() that checks privileges. */
KELVANE_API int NewTask(const char *path, char *const argv[], const char *appname, const char *name,
                        const ibitmap *icon, int flags);
/**
 * Starts an application as a task of a process group of its own, which inherits no descriptor but
 * the standard ones. It becomes active each time it opens the screen.
 * @param path an executable file
 * @param argv its arguments, the name first, ended by null; null stands for the path alone
 * @param appname by what others find it, see FindTaskByAppName()
 * @param name for people; @p icon may be null
 * @param flags TASK_*
 * @param checkprivileges not 0: a program that lies elsewhere than in "/ebrmain/bin/", or is the
 *        start.app there, is started by "/ebrmain/bin/new_task.app", whose exit status, 0 to
 *        255, is the result. There is none on a workstation: say 0
 * @return the task's number; -1 when the path cannot be executed, or no task came of it within 5 s
 *         [-1]
 */
KELVANE_API int NewTaskEx(const char *path, char *const argv[], const char *appname,
                          const char *name, const ibitmap *icon, int flags, int checkprivileges);
/** @} */

/** @name Tasks and subtasks
 * @{ */
/** This task's number [-1]. */
KELVANE_API int GetCurrentTask(void);
/** The active task, and the subtask that it shows; -1 and -1 without one [-1, -1]. */
KELVANE_API void GetActiveTask(int *task, int *subtask);
/** 1 when this task is the active one [1]. */
KELVANE_API int IsTaskActive(void);
/** The task that was active before. @return 1; 0 and zeros when there is none [0] */
KELVANE_API int GetPreviousTask(int *task, int *subtask);
/** The task that was active before this one. @return 1; 0 and zeros when there is none [0] */
KELVANE_API int GetPreviousTaskInStack(int *task, int *subtask);
/** Fills @p list with at most @p size numbers, the task used last first. @return tasks [0] */
KELVANE_API int GetTaskList(int *list, int size);
/** What is known about a task, the library's until the next call; null for an unknown one [null] */
KELVANE_API const itaskinfo *GetTaskInfo(int task);
/** Looks for a task that has a book open. @return 1; 0 and zeros without one, or for an empty name
 */
KELVANE_API int FindTaskByBook(const char *book, int *task, int *subtask);
/** @return the task with this application name; -1 without one, or for an empty name */
KELVANE_API int FindTaskByAppName(const char *name);
/** Sets what others see of a task. @return 1; 0 for an unknown task [0] */
KELVANE_API int SetTaskParameters(int task, const char *book, const char *title,
                                  const ibitmap *icon, unsigned flags);

/** Makes a subtask of this task. @return its number; -1 when there are too many [-1] */
KELVANE_API int NewSubtask(const char *name);
/** Makes a subtask the one that its task shows. */
KELVANE_API void SwitchSubtask(int task, int subtask);
/** Forgets a subtask of this task. */
KELVANE_API void SubtaskFinished(int subtask);
/** Names a subtask and its book. @return 1; 0 for an unknown one [0] */
KELVANE_API int SetSubtaskInfo(int task, int subtask, const char *name, const char *book);

/**
 * Makes a task the active one: it hears EVT_FOREGROUND and its picture is shown; the one before
 * hears EVT_BACKGROUND.
 * @param subtask to be shown; below 0 the one shown last
 * @return 1; 0 for an unknown one [0]
 */
KELVANE_API int SetActiveTask(int task, int subtask);
/** Makes the task that was active before this one the active one, if this one is active. */
KELVANE_API void GoToBackground(void);
/**
 * Ends a task, which hears EVT_EXIT as if it had called CloseApp() in its next step of the loop; or
 * forgets a subtask while its task has others. A program that runs no loop hears nothing and goes
 * on.
 * @param subtask below 0: the task
 * @param force not 0: the task's process is killed
 * @return 1 [0]
 */
KELVANE_API int CloseTask(int task, int subtask, int force);
/** Opens a menu of the tasks and their subtasks, which makes the chosen one active. */
KELVANE_API void OpenTaskList(void);
/**
 * A readable name of an application or a book: what follows the last '/', without an extension of
 * up to three letters, as the key of a translation behind an "@", then with a capital letter; the
 * word itself when neither is translated.
 * @return the library's, until the next call or LoadLanguage(); empty for a null or empty path
 */
KELVANE_API const char *user_friendly_name(const char *path);
/** @} */

/** @name Sending
 * Messages and requests carry at most 65536 bytes.
 * @{ */
/** Sends an event to a task's main handler; its numbers are cut to 16 bits. @return 1 when sent [0]
 */
KELVANE_API int SendEventTo(int task, int type, int par1, int par2);
/**
 * SendEventTo() that returns when the event was handled, after what was sent before it.
 * @return 1 when it was; 0 also after 10 s, though the task may handle it later [0]
 */
KELVANE_API int SendEventSyncTo(int task, int type, int par1, int par2);
/** Sends a message to a task's message handler. @return 1 when sent [0] */
KELVANE_API int SendMessageTo(int task, int request, const void *data, int size);
/** Sets who takes messages; null: nobody, and they are dropped. @return 1 [0, nothing stored] */
KELVANE_API int SetMessageHandler(kv_messagehandler handler);
/**
 * Makes this task the one that SendRequest() of a code goes to, and the listener the one that
 * answers here; the one before goes. What another task listened for with that code is its no
 * longer, also when this one ends; but what is sent to that very task its listener still answers.
 * @param flags LISTENER_REMOVE: the listener of the code goes, and @p listener is ignored
 * @return 0; -1 on failure, in a process that is no task yet, or for no listener [-1]
 */
KELVANE_API int SetRequestListener(int request, int flags, kv_requestlistener listener);
/**
 * Sends a request to the task that listens for it, and waits. Meanwhile this task answers requests;
 * events and messages wait.
 * @param data holds max(@p size, @p outsize) bytes; the answer replaces it. Null without any
 * @param timeout in milliseconds; 0 and less stand for 10 s
 * @return what the listener returned; -1 when nobody listens, the task ends or time is over [-1]
 */
KELVANE_API int SendRequest(int request, void *data, int size, int outsize, int timeout);
/** Sends a request and waits for nothing. @return 1 when sent; -1 when nobody listens [-1] */
KELVANE_API int SendRequestNoWait(int request, void *data, int size, int outsize);
/** SendRequest() to a certain task; 0 is whichever listens. */
KELVANE_API int SendRequestTo(int task, int request, void *data, int size, int outsize,
                              int timeout);
/** SendRequestNoWait() to a certain task. */
KELVANE_API int SendRequestToNoWait(int task, int request, void *data, int size, int outsize);
/** Sends a request without data and waits for nothing. @return as SendRequestNoWait() [0] */
KELVANE_API int SendGlobalRequest(int code);
/** @} */

/** @name Framebuffers
 * @{ */
/**
 * The framebuffer of a task, which goes on to show what that task draws. What is drawn into it is
 * seen nowhere else, and what the task draws is no longer seen around there.
 * @return a canvas, to be given back by ReleaseTaskFramebuffer(); null without one [null]
 */
KELVANE_API icanvas *GetTaskFramebuffer(int task);
/** Size in pixels and depth in bits. @return 1; 0 and zeros without a framebuffer [0] */
KELVANE_API int GetTaskFramebufferInfo(int task, int *w, int *h, int *depth);
/** Gives a canvas of GetTaskFramebuffer() back; anything else is ignored. */
KELVANE_API void ReleaseTaskFramebuffer(icanvas *canvas);
/** Copies the active task's picture into this task's, of the same size. @return 1 when copied [0]
 */
KELVANE_API int CopyActiveFb(void);
/** @} */

KELVANE_END_DECLS

#endif
