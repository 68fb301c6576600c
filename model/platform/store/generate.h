#pragma once

#include <QString>

namespace store {

/// How the folders of a generated store hang together.
enum class FolderShape {
    Tree, ///< up to five levels, each folder below a random one above
    Deep, ///< each folder of a store below the one made before it
    Wide, ///< every folder straight below its store's root
};

/// The sizes of a generated store, for benchmarks.
struct GenerateOptions {
    int stores = 2;
    int folders = 20000;  ///< in all stores together
    int agents = 5000;    ///< bindings with their binding and state messages
    int hidden = 0;       ///< other hidden messages, spread over the folders
    int messages = 10000; ///< ordinary messages, spread over the folders
    unsigned seed = 1;    ///< same options and seed: same store
    FolderShape shape = FolderShape::Tree;
};

/// Makes a new store at `dbPath` with the given sizes, deterministically.
void generateStore(const GenerateOptions &options, const QString &dbPath);

} // namespace store
