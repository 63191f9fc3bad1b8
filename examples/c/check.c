/* Checks files, and prints what is found and what mends it. Built with:
   cc check.c -o check $(pkg-config --cflags --libs code-analyzer-check) */

#include <CodeAnalyzerCheck.h>

#include <inttypes.h>
#include <stdio.h>

struct counts
{
    const char* file;
    int errors;
};

static int print(const code_analyzer_finding* finding, void* data)
{
    struct counts* counts = data;
    counts->errors += finding->severity == CODE_ANALYZER_ERROR;
    printf("%s:%" PRIu64 ":%" PRIu64 ": %s [%" PRId32 "]\n", counts->file, finding->span.start.line + 1,
           finding->span.start.column + 1, finding->message, finding->code);
    for (size_t i = 0; i < finding->related_count; ++i)
        printf("  line %" PRIu64 ": %s\n", finding->related[i].span.start.line + 1, finding->related[i].message);
    for (size_t i = 0; i < finding->fix_count; ++i) {
        const code_analyzer_fix* fix = &finding->fixes[i];
        printf("  %s: %s", fix->proof == CODE_ANALYZER_MENDS ? "mended by" : "helped by", fix->title);
        for (size_t e = 0; e < fix->edit_count; ++e)
            printf(" (bytes %zu to %zu become \"%s\")", fix->edits[e].span.start.offset,
                   fix->edits[e].span.end.offset, fix->edits[e].text);
        printf("\n");
    }
    return 0;
}

int main(int argc, char** argv)
{
    code_analyzer_settings settings = CODE_ANALYZER_SETTINGS_INIT;
    code_analyzer_session* session;
    int errors = 0;

    settings.fixes = CODE_ANALYZER_FIXES_PROVED;
    if (code_analyzer_open(&settings, &session) != CODE_ANALYZER_DONE) {
        fprintf(stderr, "%s\n", code_analyzer_error(NULL));
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        struct counts counts = {argv[i], 0};
        code_analyzer_status status = code_analyzer_check_file(session, argv[i], print, &counts);
        if (status >= CODE_ANALYZER_BAD_CALL) {
            fprintf(stderr, "%s: %s\n", argv[i], code_analyzer_error(session));
            code_analyzer_close(session);
            return 2;
        }
        errors += counts.errors;
    }
    code_analyzer_close(session);
    return errors != 0;
}
