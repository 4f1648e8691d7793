// Fills in, or checks, the literals of a program's stub helpers. Where functions of libraries are bound
// when they are first called (before macOS 12), the first call of each goes through a helper of its own,
// which hands over where in the lazy binding opcodes those of its function begin. The linker in use
// leaves all these offsets 0 in arm64 programs, with which every first call would reach the function
// that is bound first. Filled in before the program is signed. The opcodes and structures are those of
// Apple's published header mach-o/loader.h.
//
//   node stubHelpers.mjs fill|check PROGRAM...

import { readFileSync, writeFileSync } from "node:fs";
import { commands, CPU_TYPE_ARM64, CPU_TYPE_X86_64, expect, parts, processorOf } from "./machO.mjs";

const LC_SEGMENT_64 = 0x19;
const LC_DYLD_INFO_ONLY = 0x80000022;
const BIND_OPCODE_DONE = 0x00;
const BIND_OPCODE_SET_DYLIB_ORDINAL_IMM = 0x10;
const BIND_OPCODE_SET_DYLIB_ORDINAL_ULEB = 0x20;
const BIND_OPCODE_SET_SYMBOL_TRAILING_FLAGS_IMM = 0x40;
const BIND_OPCODE_SET_SEGMENT_AND_OFFSET_ULEB = 0x70;
const BIND_OPCODE_DO_BIND = 0x90;

// Behind `common` bytes, where all helpers end, each takes `size` bytes: `code`, which reads the literal
// (pushq, ldr w16), a jump, and the literal at its place.
const HELPERS = {
  [CPU_TYPE_X86_64]: { name: "x86_64", common: 16, size: 10, code: Buffer.of(0x68), literal: 1 },
  [CPU_TYPE_ARM64]: { name: "arm64", common: 24, size: 12, code: Buffer.of(0x50, 0, 0, 0x18), literal: 8 },
};

function stubHelpers(segments) {
  for (const segment of segments) {
    for (let left = segment.readUInt32LE(64), at = 72; left > 0; --left, at += 80) {
      if (segment.toString("latin1", at, at + 16).replace(/\0.*/, "") !== "__stub_helper") continue;
      return {
        address: Number(segment.readBigUInt64LE(at + 32)),
        size: Number(segment.readBigUInt64LE(at + 40)),
        offset: segment.readUInt32LE(at + 48),
      };
    }
  }
  throw new Error("no stub helpers");
}

// [{ begin, symbol, segment, offset }]: where the opcodes of each binding begin, and its pointer.
function lazyBindings(opcodes) {
  const bindings = [];
  let at = 0;
  const uleb = () => {
    let value = 0;
    for (let scale = 1; ; scale *= 128) {
      expect(at < opcodes.length, "the lazy binding opcodes are cut off");
      const byte = opcodes[at++];
      value += (byte & 0x7f) * scale;
      if (byte < 0x80) return value;
    }
  };
  let binding = { begin: 0 };
  while (at < opcodes.length) {
    const code = opcodes[at++];
    switch (code & 0xf0) {
      case BIND_OPCODE_DONE:
        binding = { begin: at };
        break;
      case BIND_OPCODE_SET_DYLIB_ORDINAL_IMM:
        break;
      case BIND_OPCODE_SET_DYLIB_ORDINAL_ULEB:
        uleb();
        break;
      case BIND_OPCODE_SET_SYMBOL_TRAILING_FLAGS_IMM: {
        const end = opcodes.indexOf(0, at);
        expect(end !== -1, "the lazy binding opcodes are cut off");
        binding.symbol = opcodes.toString("latin1", at, end);
        at = end + 1;
        break;
      }
      case BIND_OPCODE_SET_SEGMENT_AND_OFFSET_ULEB:
        binding.segment = code & 0x0f;
        binding.offset = uleb();
        break;
      case BIND_OPCODE_DO_BIND:
        bindings.push(binding);
        break;
      default:
        throw new Error(`a lazy binding with the opcode 0x${code.toString(16)}`);
    }
  }
  return bindings;
}

// [{ symbol, at, offset }]: where in the part the literal of each function is, and what it has to be.
// Until a function is bound, its lazy pointer holds the address of its helper.
function literals(part) {
  const { common, size, code, literal } = HELPERS[processorOf(part)];
  const segments = commands(part, LC_SEGMENT_64);
  const helpers = stubHelpers(segments);
  const [info] = commands(part, LC_DYLD_INFO_ONLY);
  expect(info !== undefined, "not bound by opcodes");
  const [begin, length] = [32, 36].map((at) => info.readUInt32LE(at));
  const bindings = lazyBindings(part.subarray(begin, begin + length));
  const found = new Map(bindings.map((binding) => {
    const segment = segments[binding.segment];
    expect(segment !== undefined, `${binding.symbol}: no segment ${binding.segment}`);
    const pointer = Number(segment.readBigUInt64LE(40)) + binding.offset;
    const distance = Number(part.readBigUInt64LE(pointer)) - helpers.address;
    expect(distance >= common && distance < helpers.size, `${binding.symbol}: leads to no helper`);
    const helper = helpers.offset + distance;
    const begins = part.subarray(helper, helper + code.length);
    expect(begins.equals(code), `${binding.symbol}: unknown code in its helper`);
    return [helper, { symbol: binding.symbol, at: helper + literal, offset: binding.begin }];
  }));
  expect(found.size === bindings.length, "two functions share a helper");
  expect(helpers.size === common + size * found.size, "a helper without a function");
  return [...found.values()];
}

const actions = {
  fill(name) {
    const file = readFileSync(name);
    for (const part of parts(file)) {
      for (const { at, offset } of literals(part)) part.writeUInt32LE(offset, at);
    }
    writeFileSync(name, file);
  },

  check(name) {
    for (const part of parts(readFileSync(name))) {
      const processor = HELPERS[processorOf(part)].name;
      const all = literals(part);
      for (const { symbol, at, offset } of all) {
        const found = part.readUInt32LE(at);
        expect(found === offset, `${symbol} for ${processor}: offset ${found} in its helper, not ${offset}`);
      }
      console.log(`${name} for ${processor}: the offsets of ${all.length} stub helpers are right`);
    }
  },
};

const [action, ...names] = process.argv.slice(2);
for (const name of names) {
  try {
    actions[action](name);
  } catch (error) {
    console.error(`${name}: ${error.message}`);
    process.exitCode = 1;
  }
}
