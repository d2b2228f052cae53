// Translates lines with the reference in this process. Standard input is one JSON object:
//   {"folder": where npm has installed it,
//    "legs": [{"model": path, "vocabularies": [path, ...], "shortlist": path or ""}, ...] (one, or two to pivot),
//    "lines": [text, ...], "warmUp": how many of the lines to translate beforehand}
// Standard output is one: {"translations": [text, ...], "milliseconds": [number, ...],
//    "processorMilliseconds": [number, ...], "megabytes": number}.
import fs from "node:fs";
import path from "node:path";

const request = JSON.parse(fs.readFileSync(0, "utf8"));
const folder = path.join(request.folder, "node_modules/@browsermt/bergamot-translator/worker");

// The module asks for its integer kernels from outside and carries plain versions of them itself.
const kernels = {
    int8_prepare_a: "int8PrepareAFallback",
    int8_prepare_b: "int8PrepareBFallback",
    int8_prepare_b_from_transposed: "int8PrepareBFromTransposedFallback",
    int8_prepare_b_from_quantized_transposed: "int8PrepareBFromQuantizedTransposedFallback",
    int8_prepare_bias: "int8PrepareBiasFallback",
    int8_multiply_and_add_bias: "int8MultiplyAndAddBiasFallback",
    int8_select_columns_of_b: "int8SelectColumnsOfBFallback",
};

function loadModule() {
    return new Promise((resolve, reject) => {
        const module = {
            print: () => {},
            printErr: (text) => console.error(text),
            onAbort: (reason) => reject(new Error(`aborted: ${reason}`)),
            onRuntimeInitialized: () => resolve(module),
            instantiateWasm: (imports, receive) => {
                const gemm = {};
                for (const [name, fallback] of Object.entries(kernels))
                    gemm[name] = (...values) => module.asm[fallback](...values);
                const code = fs.readFileSync(path.join(folder, "bergamot-translator-worker.wasm"));
                WebAssembly.instantiate(code, { ...imports, wasm_gemm: gemm })
                    .then((result) => receive(result.instance))
                    .catch(reject);
                return {};
            },
        };
        // The script is written for a worker and takes its module from the surrounding scope.
        const script = fs.readFileSync(path.join(folder, "bergamot-translator-worker.js"), "utf8");
        new Function("Module", "require", "__dirname", "__filename", script)(module, () => ({}), folder, folder);
    });
}

const module = await loadModule();

function loaded(file, alignment) {
    const bytes = file ? fs.readFileSync(file) : new Uint8Array(0);
    const memory = new module.AlignedMemory(bytes.byteLength, alignment);
    memory.getByteArrayView().set(bytes);
    return memory;
}

const settings = `beam-size: 1
normalize: 1.0
word-penalty: 0
cpu-threads: 0
gemm-precision: int8shiftAlphaAll
skip-cost: true
alignment: soft
quiet: true
quiet-translation: true
ssplit-mode: sentence
max-length-break: 128
mini-batch-words: 1024
workspace: 128
max-length-factor: 2.0
`;

const legs = request.legs.map((leg) => {
    const vocabularies = new module.AlignedMemoryList();
    for (const file of leg.vocabularies)
        vocabularies.push_back(loaded(file, 64));
    return new module.TranslationModel(settings, loaded(leg.model, 256), loaded(leg.shortlist, 64), vocabularies, null);
});
const service = new module.BlockingService({ cacheSize: 0 });

function translate(line) {
    const lines = new module.VectorString();
    lines.push_back(line);
    const options = new module.VectorResponseOptions();
    options.push_back({ alignment: false, html: false, qualityScores: false });
    const response = legs.length === 2
        ? service.translateViaPivoting(legs[0], legs[1], lines, options)
        : service.translate(legs[0], lines, options);
    const text = response.get(0).getTranslatedText();
    for (const object of [response, lines, options])
        object.delete();
    return text;
}

for (const line of request.lines.slice(0, request.warmUp))
    translate(line);
const translations = [];
const milliseconds = [];
const processorMilliseconds = [];
for (const line of request.lines) {
    const start = performance.now();
    const before = process.cpuUsage();
    translations.push(translate(line));
    const { user, system } = process.cpuUsage(before);
    processorMilliseconds.push((user + system) / 1000);
    milliseconds.push(performance.now() - start);
}
const megabytes = process.memoryUsage().rss / 1048576;
process.stdout.write(JSON.stringify({ translations, milliseconds, processorMilliseconds, megabytes }));
