#compdef finf
# Completion of finf for zsh, made by: finf --completion zsh

_finf() {
    setopt local_options extended_glob
    local -a commands
    commands=(
        'encode:XML text -> Fast Infoset'
        'decode:Fast Infoset -> XML text'
        'vocabulary:Sample documents -> an external vocabulary for documents like them'
        'inspect:Show what stands in the octets of Fast Infoset documents'
        'validate:Report what Fast Infoset documents have against the standard'
        'stats:What the octets of Fast Infoset documents are spent on'
        'diff:Compare the information of two documents, XML text or Fast Infoset'
        'bench:Time parsing and writing beside Expat'\''s parsing of the same information'
    )
    if ((CURRENT == 2)); then
        if [[ $words[2] == -* ]]; then
            compadd -- -h --help -V --version
        else
            _describe command commands
        fi
        return
    fi
    local command=$words[2]
    shift words
    ((CURRENT--))
    case $command in
    encode)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*-o[Where to write to; - is standard output]:file:_files' \
            '*--output[Where to write to; - is standard output]:file:_files' \
            '*--output-directory[Write below DIR, which is made when missing, not beside the inputs]:directory:_files -/' \
            '*-c[The same as -o -]' \
            '*--stdout[The same as -o -]' \
            '*-f[Overwrite existing output files; write binary to a terminal]' \
            '*--force[Overwrite existing output files; write binary to a terminal]' \
            '*-k[Keep the inputs, which is the case anyway]' \
            '*--keep[Keep the inputs, which is the case anyway]' \
            '*--in-place[Replace the inputs by their conversions]' \
            '*-u[Leave outputs alone that are no older than their inputs, overwrite the others]' \
            '*--update[Leave outputs alone that are no older than their inputs, overwrite the others]' \
            '*--compress[Write outputs in gzip or zstd]:word:(gzip zstd)' \
            '*-r[Convert the documents in directories, too]' \
            '*--recursive[Convert the documents in directories, too]' \
            '*-j[Documents converted at a time; 0: one for each processor]:value:' \
            '*--jobs[Documents converted at a time; 0: one for each processor]:value:' \
            '*-q[Show no progress, which a terminal does]' \
            '*--quiet[Show no progress, which a terminal does]' \
            '*-v[Tell the sizes of each document]' \
            '*--verbose[Tell the sizes of each document]' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*--max-indexed-length[Longest string, in octets, that is indexed; -1 indexes all]:value:' \
            '*--strip-whitespace[Drop text that is nothing but white space]' \
            '*--xml-declaration[Begin with an XML declaration]' \
            '*--typed[Write numbers, booleans, UUIDs and octets in texts and attributes in binary; with =canonical, numbers in canonical spelling only]' \
            '*:document:_files -g "^*.finf(|.gz|.zst)"'
        ;;
    decode)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*-o[Where to write to; - is standard output]:file:_files' \
            '*--output[Where to write to; - is standard output]:file:_files' \
            '*--output-directory[Write below DIR, which is made when missing, not beside the inputs]:directory:_files -/' \
            '*-c[The same as -o -]' \
            '*--stdout[The same as -o -]' \
            '*-f[Overwrite existing output files; write binary to a terminal]' \
            '*--force[Overwrite existing output files; write binary to a terminal]' \
            '*-k[Keep the inputs, which is the case anyway]' \
            '*--keep[Keep the inputs, which is the case anyway]' \
            '*--in-place[Replace the inputs by their conversions]' \
            '*-u[Leave outputs alone that are no older than their inputs, overwrite the others]' \
            '*--update[Leave outputs alone that are no older than their inputs, overwrite the others]' \
            '*--compress[Write outputs in gzip or zstd]:word:(gzip zstd)' \
            '*-r[Convert the documents in directories, too]' \
            '*--recursive[Convert the documents in directories, too]' \
            '*-j[Documents converted at a time; 0: one for each processor]:value:' \
            '*--jobs[Documents converted at a time; 0: one for each processor]:value:' \
            '*-q[Show no progress, which a terminal does]' \
            '*--quiet[Show no progress, which a terminal does]' \
            '*-v[Tell the sizes of each document]' \
            '*--verbose[Tell the sizes of each document]' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*--pretty[Indent elements where there is no text, for reading]' \
            '*--canonical-numbers[Write arrays of float and double in the canonical form of XML Schema (1.5E0)]' \
            '*--lenient[Read what departs from the standard, and older documents of this tool, too]' \
            '*--first[Decode the first document, whatever is behind it]' \
            '*--separator[Write all documents into one output, without XML declarations, each followed by TEXT (a line end by default); \n, \t, \0 and \\ in it stand for what they do in C]' \
            '*--follow[Wait at the end of INPUT for more, and write to standard output as it comes]' \
            '*--recover[Write what is whole of documents that do not come to their end, and close what is open]' \
            '*:document:_files -g "*.finf(|.gz|.zst)"'
        ;;
    vocabulary)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*-o[Where to write the vocabulary to, a document; - is standard output]:file:_files' \
            '*--output[Where to write the vocabulary to, a document; - is standard output]:file:_files' \
            '*-f[Overwrite an existing FILE]' \
            '*--force[Overwrite an existing FILE]' \
            '*--format[xml or finf; xml by default, unless FILE ends in .finf]:word:(xml finf)' \
            '*--uri[What documents are going to call the vocabulary; by default that of its content]:value:' \
            '*--min-count[How often a value or text has to occur in the samples]:value:' \
            '*--strip-whitespace[Drop text that is nothing but white space, as encode does]' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*:file:_files'
        ;;
    inspect)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*--html[Show it as one HTML page, for a browser]' \
            '*--json[Show it as one JSON document]' \
            '*-o[Where to write to; - is standard output, the default]:file:_files' \
            '*--output[Where to write to; - is standard output, the default]:file:_files' \
            '*-f[Overwrite an existing OUTPUT]' \
            '*--force[Overwrite an existing OUTPUT]' \
            '*--first[Show the first document, whatever is behind it]' \
            '*--tables[Show the vocabulary tables at the end of each document]' \
            '*--full[Show all octets of long strings and their whole values]' \
            '*--offset[Begin with the construct at this octet]:value:' \
            '*--limit[Show this many constructs only]:value:' \
            '*--color[auto (on a terminal, unless NO_COLOR is set), always or never]:word:(auto always never)' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*:document:_files -g "*.finf(|.gz|.zst)"'
        ;;
    validate)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*-r[Read the .finf files in directories, too]' \
            '*--recursive[Read the .finf files in directories, too]' \
            '*--json[Print one JSON document]' \
            '*-q[Print nothing but what is wrong]' \
            '*--quiet[Print nothing but what is wrong]' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*:document:_files -g "*.finf(|.gz|.zst)"'
        ;;
    stats)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*-r[Read the .finf files in directories, too]' \
            '*--recursive[Read the .finf files in directories, too]' \
            '*--json[Print one JSON document]' \
            '*--svg[Draw a picture, too; - is standard output]:file:_files' \
            '*-f[Overwrite an existing FILE]' \
            '*--force[Overwrite an existing FILE]' \
            '*--color[auto (on a terminal, unless NO_COLOR is set), always or never]:word:(auto always never)' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*:document:_files -g "*.finf(|.gz|.zst)"'
        ;;
    diff)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*-q[Print nothing, the exit status tells]' \
            '*--quiet[Print nothing, the exit status tells]' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*:file:_files'
        ;;
    bench)
        _arguments -s \
            '*-h[Print this help message and exit]' \
            '*--help[Print this help message and exit]' \
            '*--rounds[How often each is measured, in turn; the median counts]:value:' \
            '*--json[Print JSON, times in microseconds]' \
            '*--external-vocabulary[Build the external vocabulary URI, or that of its content, from FILE (XML or Fast Infoset); may be repeated]:file:_files' \
            '*--vocabulary[Use an external vocabulary that finf knows: x3d]:word:(x3d)' \
            '*--max-depth[Elements that may be open at a time]:value:' \
            '*--max-string-length[Octets of one string or array]:value:' \
            '*--max-table-entries[Entries of one vocabulary table]:value:' \
            '*--max-output[Octets of all names, values and texts that come out of one document]:value:' \
            '*--max-amplification[The same for each octet read, beyond the first 64 MiB]:value:' \
            '*:file:_files'
        ;;
    esac
}

_finf "$@"
