// velmora: the library for people at a shell.
#include "interrupt.h"
#include "subcommands.h"

int main(int argc, char** argv) {
    using namespace velmora::tool;
    watch_interrupts();
    char help[] = "help", version[] = "version";
    if (argc < 2) fail_usage(0, "which subcommand?");
    if (Text(argv[1]) == "--help" || Text(argv[1]) == "-h") argv[1] = help;
    if (Text(argv[1]) == "--version" || Text(argv[1]) == "-V") argv[1] = version;
    const SubcommandRow* row = find_subcommand(Text(argv[1]));
    if (row == nullptr) fail_usage(0, "no subcommand", argv[1]);
    // What is wrong with the options is told in the form that they ask for.
    if ((option_table()[static_cast<std::size_t>(Opt::errors)].subcommands & row->id) != 0)
        for (int i = 2; i < argc; ++i)
            if (Text(argv[i]) == "--errors=json" ||
                (Text(argv[i]) == "json" && Text(argv[i - 1]) == "--errors"))
                set_errors_json(true);
    const Options options(row->id, argc - 1, argv + 1);
    set_errors_json(options.choice(Opt::errors) == 1);
    if (options.given(Opt::help) && row->id != sub::help) {
        char* arguments[] = {help, argv[1], nullptr};
        return static_cast<int>(run_help(Options(sub::help, 2, arguments)));
    }
    return static_cast<int>(row->run(options));
}
