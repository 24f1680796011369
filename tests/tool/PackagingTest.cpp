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
            "--max-table-entries ");
}

TEST_F(PackagingTest, CompletionOffersSubCommandsAndOptions) {
    write("complete",
          "source " TAMO_PACKAGING "/finf.bash\n"
          "offer() { COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _finf 2>&1; echo \"${COMPREPLY[*]}\"; }\n");
    must("mkdir docs; touch date");
    EXPECT_EQ(must("source ./complete; offer finf d; offer finf --v; offer finf encode --max-i; offer finf "
                   "encode -f\n"
                   "offer finf decode --typ; offer finf decode --output-directory d; offer finf decode d"),
              "decode\n--version\n--max-indexed-length\n-f\n\ndocs\n\n");
}

TEST_F(PackagingTest, TypeIsRecognisedByContentAndName) {
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
