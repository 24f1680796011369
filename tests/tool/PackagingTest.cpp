// What is installed beside the program speaks of the program as it is.
#include "Finf.h"

namespace {

class PackagingTest : public FinfTest {};

// Of each sub-command the manual has the options of --help, no more and no fewer, the common ones apart.
TEST_F(PackagingTest, ManualHasTheOptionsOfHelp) {
    write("options", "options() { grep -oE -- '--[a-z][a-z-]*' | LC_ALL=C sort -u; }\n"
                     "commands() { finf --help | sed -nE '/^Subcommands:/,/^$/ s/^  ([a-z]+) .*/\\1/p'; }\n"
                     "helped() { finf $1 --help | grep -oE '^  (-[a-z],)?--[a-z-]+' | options; }\n"
                     "manual() { sed 's/\\\\-/-/g' " TAMO_PACKAGING "/finf.1 | awk -v section=\"$1\" '\n"
                     "/^\\.S[SH]/ { inside = $0 == section; next } last == \".TP\" && inside; { last = $0 }' "
                     "| options; }\n");
    EXPECT_EQ(
        must("source ./options; commands | wc -l; manual '.SH COMMON OPTIONS' | tr '\\n' ' '\n"
             "for c in $(commands); do (manual '.SH COMMON OPTIONS'; manual \".SS finf $c\") | LC_ALL=C sort "
             "|\n"
             "diff - <(helped $c) | sed \"s/^/$c: /\"; done"),
        must("source ./options; commands | wc -l") +
            "--external-vocabulary --help --max-amplification --max-depth --max-output --max-string-length "
            "--max-table-entries --vocabulary ");
}

TEST_F(PackagingTest, CompletionOffersWhatFits) {
    write("complete",
          "source " TAMO_PACKAGING "/finf.bash\ncompopt() { :; }\n"
          "offer() { COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _finf 2>&1; echo \"${COMPREPLY[*]}\"; }\n");
    must("mkdir docs; touch date data.finf data.finf.gz dart.xml");
    const struct {
        const char* words;
        const char* offer;
    } CASES[] = {
        {"d", "decode diff"},
        {"--v", "--version"},
        {"encode --max-i", "--max-indexed-length"},
        {"encode -f", "-f"},
        {"decode --typ", ""},
        {"decode --output-directory d", "docs"},
        {"decode d", "data.finf data.finf.gz docs"},
        {"stats -r d", "data.finf data.finf.gz docs"},
        {"encode da", "dart.xml date"},
        {"encode --compress ", "gzip zstd"},
        {"decode --vocabulary ", "x3d"},
        {"inspect --color a", "always auto"},
        {"decode -o d", ""},
    };
    for (const auto& each : CASES) {
        SCOPED_TRACE(each.words);
        std::string words = each.words;
        words += words.ends_with(' ') ? "''" : "";
        EXPECT_EQ(must("LC_ALL=C; source ./complete; offer finf " + words +
                       " | tr ' ' '\\n' | sort | paste -sd ' '"),
                  std::string(each.offer) + '\n');
    }
}

// One source for all of them: the options of the program.
TEST_F(PackagingTest, CompletionsAreThoseThatTheProgramMakes) {
    for (const std::string shell : {"bash", "zsh", "fish"}) {
        EXPECT_EQ(must("finf --completion " + shell), must("cat " TAMO_PACKAGING "/finf." + shell)) << shell;
    }
    EXPECT_EQ(run("finf --completion tcsh"),
              (Result{2, "", "finf: --completion takes bash, zsh or fish; finf --help shows the usage\n"}));
}

// Where the shells are installed.
TEST_F(PackagingTest, OtherShellsTakeTheirCompletion) {
    if (const std::string missing = lacking("zsh fish"); !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    must("zsh -n " TAMO_PACKAGING "/finf.zsh; touch data.finf dart.xml");
    EXPECT_EQ(must("export HOME=$PWD; fish -c 'source " TAMO_PACKAGING
                   "/finf.fish; complete -C \"finf encode --compress \"; complete -C \"finf decode da\"' | "
                   "cut -f 1 | "
                   "sort | tr '\\n' ' '"),
              "data.finf gzip zstd ");
}

TEST_F(PackagingTest, TypeIsRecognisedByContentAndName) {
    if (const std::string missing = lacking("file update-mime-database"); !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    write("a.xml", "<?xml version='1.0' encoding='UTF-8'?><a>encoding='finf'</a>");
    must("finf encode a.xml -o plain; finf encode a.xml -o declared --xml-declaration\n"
         "(printf \"<?xml version='1.1' encoding='finf' standalone='yes'?>\"; cat plain) >long");
    EXPECT_EQ(must("file -m " TAMO_PACKAGING "/finf.magic plain declared long"),
              "plain:    Fast Infoset document, version 1\n"
              "declared: Fast Infoset document with XML declaration\n"
              "long:     Fast Infoset document with XML declaration\n");
    EXPECT_EQ(must("file -b --mime-type -m " TAMO_PACKAGING
                   "/finf.magic:/usr/share/misc/magic.mgc * | tr '\\n' ' '"),
              "text/xml application/fastinfoset application/fastinfoset application/fastinfoset ");

    must("mkdir -p mime/packages; cp " TAMO_PACKAGING
         "/finf.xml mime/packages; update-mime-database mime >/dev/null 2>&1");
    EXPECT_EQ(must("grep -v '^#' mime/globs2"), "50:application/fastinfoset:*.finf\n");
    EXPECT_EQ(read("mime/magic"),
              std::string("MIME-Magic\0\n[60:application/fastinfoset]\n>0=\0\4\xE0\0\0\1\n"
                          ">0=\0\6<?xml \n1>6=\0\17encoding='finf'+15\n",
                          88));
}

} // namespace
