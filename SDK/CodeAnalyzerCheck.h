/**
 * @file CodeAnalyzerCheck.h
 * The code validator as a C library: give it a text, get records.
 *
 * A host of any language links or loads libCodeAnalyzerCheck.so.1. It needs no parsing service, no region
 * source and no event loop: the library cuts the texts itself, checks PHP against its whole grammar, HTML and
 * CSS by their standards, and reads the settings of the projects that files lie in.
 *
 * Threads: a session is for one thread at a time, whichever that is; sessions are independent of each other,
 * so that several threads check at once with a session for each. code_analyzer_cancel() alone may be called
 * at any time from any thread. Callbacks run on the thread that asked for the check, before that call
 * returns.
 *
 * Texts that go in and come out are UTF-8 and end with a NUL character unless a length is given. Lines and
 * columns count from 0; columns are characters (UTF-32 code points), a line ends with LF, CR LF or CR, and
 * spans end before their end. Whatever a callback is given is owned by the library and valid only during the
 * call.
 *
 * Nothing is thrown across this interface, and nothing is written to disk. Within a major version functions
 * keep their names and meaning and structures only grow at their ends, which their first member tells.
 */
#ifndef CODE_ANALYZER_CHECK_H
#define CODE_ANALYZER_CHECK_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define CODE_ANALYZER_API __attribute__((visibility("default")))
#else
#define CODE_ANALYZER_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** What checks; made by code_analyzer_open(). */
typedef struct code_analyzer_session code_analyzer_session;

/** How a call has ended. */
typedef enum code_analyzer_status {
    CODE_ANALYZER_DONE = 0,    /**< all has been checked and handed over */
    CODE_ANALYZER_STOPPED = 1, /**< the callback wanted no more */
    CODE_ANALYZER_CANCELLED =
        2, /**< code_analyzer_cancel() came before the end; what was handed over is not all */
    CODE_ANALYZER_NO_SOURCE = 3, /**< nothing to check: a binary file, or one that the settings leave out */
    CODE_ANALYZER_BAD_CALL = 4,  /**< an argument that cannot be, or a session that is busy */
    CODE_ANALYZER_BAD_SETTINGS =
        5,                        /**< the settings are wrong: those given, or those of the file's project */
    CODE_ANALYZER_UNREADABLE = 6, /**< the file cannot be read */
    CODE_ANALYZER_FAILED = 7      /**< the check itself, or the memory for it */
} code_analyzer_status;

/** How bad a finding is. */
typedef enum code_analyzer_severity {
    CODE_ANALYZER_WARNING = 1,
    CODE_ANALYZER_ERROR = 2
} code_analyzer_severity;

/** Which fixes come with findings. */
typedef enum code_analyzer_fixes {
    CODE_ANALYZER_FIXES_NONE = 0,   /**< none, which is fastest */
    CODE_ANALYZER_FIXES_LIKELY = 1, /**< what the checker thinks of, untried */
    CODE_ANALYZER_FIXES_PROVED = 2  /**< those that were tried on a copy, which is checked again for each: the
                                       finding  goes, and nothing comes up before it */
} code_analyzer_fixes;

/** How well a fix is known to help. */
typedef enum code_analyzer_proof {
    CODE_ANALYZER_UNTRIED = 0,
    CODE_ANALYZER_HELPS =
        1, /**< the finding goes, but another one comes up behind it, or a better fix is there */
    CODE_ANALYZER_MENDS = 2 /**< the finding goes, and none comes up */
} code_analyzer_proof;

/** No offset is known: the file is not UTF-8. */
#define CODE_ANALYZER_NO_OFFSET SIZE_MAX

/** A place in a text. */
typedef struct code_analyzer_position
{
    uint64_t line;   /**< from 0 */
    uint64_t column; /**< from 0, in characters */
    size_t offset;   /**< from 0, in bytes of the text or file as it was given; or CODE_ANALYZER_NO_OFFSET */
} code_analyzer_position;

/** A piece of a text; it ends before `end`. */
typedef struct code_analyzer_span
{
    code_analyzer_position start;
    code_analyzer_position end;
} code_analyzer_span;

/** Another place of the same text that a finding speaks of. */
typedef struct code_analyzer_related
{
    code_analyzer_span span;
    const char* message; /**< what is there */
} code_analyzer_related;

/** A place and the text that is to stand there instead. */
typedef struct code_analyzer_edit
{
    code_analyzer_span span;
    const char* text; /**< lines end with LF, whatever those of the file end with */
} code_analyzer_edit;

/** Edits that belong together; they do not overlap, and all refer to the text as it was checked. */
typedef struct code_analyzer_fix
{
    const char* title; /**< what it does, as a sentence */
    int32_t proof;     /**< a code_analyzer_proof */
    const code_analyzer_edit* edits;
    size_t edit_count; /**< at least 1 */
} code_analyzer_fix;

/** One mistake, or one thing to warn of. */
typedef struct code_analyzer_finding
{
    size_t size; /**< of this structure as the library knows it: members beyond it are not there */
    code_analyzer_span span;
    int32_t code;           /**< stays the same for a kind of finding: 1001 */
    int32_t severity;       /**< a code_analyzer_severity, as the settings have it */
    const char* identifier; /**< names the kind for people: "missing-semicolon" */
    const char* title;      /**< what can be said of the kind alone */
    const char* message;    /**< all there is to say, in a sentence */
    const code_analyzer_related* related;
    size_t related_count;
    const code_analyzer_fix* fixes; /**< the likeliest first */
    size_t fix_count;
} code_analyzer_finding;

/**
 * Receives each finding, by position. Anything but 0 ends the call with CODE_ANALYZER_STOPPED. It must not
 * use the session but for code_analyzer_cancel(), and must not throw.
 */
typedef int (*code_analyzer_callback)(const code_analyzer_finding* finding, void* data);

/** What a session checks by; CODE_ANALYZER_SETTINGS_INIT leaves everything to the projects that files lie in.
 */
typedef struct code_analyzer_settings
{
    size_t size; /**< sizeof(code_analyzer_settings): tells the library which members there are */
    /** The settings file of all files; NULL: the code-analyzer.json nearest to each, in its folder or above;
     * "": none. */
    const char* configuration;
    /** "8.2": the version of PHP to judge by; NULL: as the settings, then composer.json, then any version has
     * it. */
    const char* php_version;
    /** A file of old findings to be silent about; NULL: that of the settings; "": none. */
    const char* baseline;
    /** Names of frameworks ("vue") whose tags and attributes are known, behind them NULL; or NULL. */
    const char* const* presets;
    int32_t no_grammar;    /**< not 0: PHP is checked statement by statement only */
    int32_t no_markup;     /**< not 0: HTML and CSS are checked for their names only */
    int32_t no_short_tags; /**< not 0: "<?" alone opens no PHP */
    int32_t fixes;         /**< a code_analyzer_fixes */
} code_analyzer_settings;

/* clang-format off */
#define CODE_ANALYZER_SETTINGS_INIT { sizeof(code_analyzer_settings), 0, 0, 0, 0, 0, 0, 0, 0 }
/* clang-format on */

/** The version of the library, "1.0.0". Any thread. */
CODE_ANALYZER_API const char* code_analyzer_version(void);

/**
 * Makes a session; `settings` may be NULL, and nothing of it is kept. On CODE_ANALYZER_DONE `*session` is the
 * caller's, who ends it with code_analyzer_close(); otherwise it is NULL, and code_analyzer_error(NULL) says
 * what is wrong. Costs some milliseconds: keep it. Any thread.
 */
CODE_ANALYZER_API code_analyzer_status code_analyzer_open(const code_analyzer_settings* settings,
                                                          code_analyzer_session** session);

/**
 * Checks a text of `length` bytes as the file `path` would be checked, which need not exist. Its ending tells
 * the language (.html, .htm and .css; else PHP with HTML around it), its folder the settings; a relative one
 * is taken from the current folder. Bytes that are no UTF-8 count as one character each, a byte order mark as
 * none. No more than 64 MiB. `callback` may be NULL.
 */
CODE_ANALYZER_API code_analyzer_status code_analyzer_check_text(code_analyzer_session* session,
                                                                const char* path, const char* text,
                                                                size_t length,
                                                                code_analyzer_callback callback, void* data);

/** The same of the file on disk, also in UTF-16 behind a byte order mark, Latin-1 and Windows-1252. */
CODE_ANALYZER_API code_analyzer_status code_analyzer_check_file(code_analyzer_session* session,
                                                                const char* path,
                                                                code_analyzer_callback callback, void* data);

/** Ends the check that runs, soon; without one it does nothing. Any thread, as long as the session is open.
 */
CODE_ANALYZER_API void code_analyzer_cancel(code_analyzer_session* session);

/** Has settings files, baselines and composer.json read anew by the checks that follow. */
CODE_ANALYZER_API void code_analyzer_reload(code_analyzer_session* session);

/**
 * What was wrong with the last call that ended with CODE_ANALYZER_BAD_CALL or worse: of the session; for
 * NULL, of code_analyzer_open() on this thread. Never NULL; valid until the next such call.
 */
CODE_ANALYZER_API const char* code_analyzer_error(const code_analyzer_session* session);

/** Ends a session that does not check; NULL is none. */
CODE_ANALYZER_API void code_analyzer_close(code_analyzer_session* session);

#ifdef __cplusplus
}
#endif

#endif
